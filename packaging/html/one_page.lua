-- Makes one page of all input files, one behind the other: the name of a file stands before those of
-- its headings, and links from file to file become links within the page. Links to other files stay,
-- seen from the folder of the sources. For pandoc 2.17 or later, run in that folder.

-- "docs/manual.md" is manual, "README.md" readme, "examples/figures/README.md" examples-figures.
local function name_of(file)
  local name = file:gsub("%.md$", ""):gsub("^docs/", ""):gsub("/README$", ""):gsub("/", "-")
  return name:lower()
end

-- A path as it is seen from the folder of the sources, when it stands in file.
local function resolved(path, file)
  local parts = {}
  for part in ((file:match("^(.*)/") or "") .. "/" .. path):gmatch("[^/]+") do
    if part == ".." and #parts > 0 then
      table.remove(parts)
    elseif part ~= "." then
      table.insert(parts, part)
    end
  end
  return table.concat(parts, "/")
end

local function text_of(file)
  local stream = assert(io.open(file, "rb"))
  local text = stream:read("a")
  stream:close()
  return text
end

local function is_elsewhere(target) return target:match("^%a[%w+.-]*:") end

local function target_in_page(target, file, on_page)
  if is_elsewhere(target) then return target end
  local path, heading = target:match("^([^#]*)#?(.*)$")
  local to = path == "" and file or resolved(path, file)
  if not on_page[to] then return to end
  return "#" .. name_of(to) .. (heading == "" and "" or "-" .. heading)
end

-- The blocks of a file. Its first heading has the name alone: links to the file lead there.
local function blocks_of(file, on_page)
  local name = name_of(file)
  local first = true
  local whole = pandoc.Div(pandoc.read(text_of(file), "gfm").blocks)
  return pandoc.walk_block(whole, {
    Header = function(header)
      header.identifier = first and name or name .. "-" .. header.identifier
      first = false
      return header
    end,
    Link = function(link)
      link.target = target_in_page(link.target, file, on_page)
      return link
    end,
    Image = function(image)
      if not is_elsewhere(image.src) then image.src = resolved(image.src, file) end
      return image
    end,
  }).content
end

function Pandoc(document)
  local on_page = {}
  for _, file in ipairs(PANDOC_STATE.input_files) do on_page[file] = true end
  local blocks = pandoc.List()
  for _, file in ipairs(PANDOC_STATE.input_files) do blocks:extend(blocks_of(file, on_page)) end
  return pandoc.Pandoc(blocks, document.meta)
end
