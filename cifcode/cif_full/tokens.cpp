// From bytes to the words of a CIF. Every byte is looked at a fixed number of times, whatever the
// file holds.
#include "cifcode/cif_full/tokens.h"

#include <algorithm>  // for count, min

#include "console_code/kva_utilities/text.h"

namespace KVA_CIFFULL {

namespace {

// Control characters count as blanks: old files end with one, damaged ones hold them.
constexpr bool IS_BLANK(char c) {
  return static_cast<unsigned char>(c) <= ' ';
}

constexpr bool ENDS_LINE(char c) {
  return c == '\n' || c == '\r';
}

// Position of the first byte from at on for which the test holds; the end of the text without one.
template <class TEST>
std::size_t FIND_FROM(std::string_view bytes, std::size_t at, TEST test) {
  while (at < bytes.size() && !test(bytes[at])) ++at;
  return at;
}

std::size_t END_OF_LINE(std::string_view bytes, std::size_t at) {
  return FIND_FROM(bytes, at, ENDS_LINE);
}

// At the start of the file or behind a line's end.
bool STARTS_LINE(std::string_view bytes, std::size_t at) {
  return at == 0 || ENDS_LINE(bytes[at - 1]);
}

void SKIP_BLANKS_AND_COMMENTS(TOKENS& tokens) {
  const std::string_view bytes = tokens.BYTES;
  std::size_t at = tokens.AT;
  while (at < bytes.size()) {
    if (bytes[at] == '#')
      at = END_OF_LINE(bytes, at);
    else if (!IS_BLANK(bytes[at]))
      break;
    else
      ++at;
  }
  tokens.AT = at;
}

// ---- reserved words ----

// The kind of a bare word; text loses what only tells the kind.
TOKEN KIND_OF_WORD(std::string_view& text) {
  struct RESERVED {
    std::string_view START;
    TOKEN KIND;
    bool NAMED;  // more may stand behind it
  };
  static constexpr std::array<RESERVED, 5> reserved{{
      {"data_", TOKEN::DATA, true},
      {"loop_", TOKEN::LOOP, false},
      {"save_", TOKEN::SAVE, true},
      {"stop_", TOKEN::STOP, false},
      {"global_", TOKEN::GLOBAL, false},
  }};
  if (text.size() < 5 || (text[4] != '_' && text.back() != '_')) return TOKEN::BARE;
  for (const RESERVED& word : reserved) {
    if (text.size() < word.START.size() || (!word.NAMED && text.size() > word.START.size()))
      continue;
    if (!KVA_UTILITIES::BEGINS_WITH(text, word.START)) continue;
    text.remove_prefix(word.START.size());
    return word.KIND;
  }
  return TOKEN::BARE;
}

// ---- values ----

// Leaves a text that never ends: what follows is read again from the next line that begins with a
// name, a loop or a block.
void SKIP_TO_START_OF_ITEM(TOKENS& tokens) {
  const std::string_view bytes = tokens.BYTES;
  std::size_t at = END_OF_LINE(bytes, tokens.AT);
  while (at < bytes.size()) {
    const std::size_t first = FIND_FROM(bytes, at, [](char c) { return !IS_BLANK(c); });
    std::string_view word = bytes.substr(first, 8);
    word = word.substr(0, FIND_FROM(word, 0, IS_BLANK));
    if (word.starts_with('_') || KIND_OF_WORD(word) != TOKEN::BARE) {
      at = first;
      break;
    }
    at = END_OF_LINE(bytes, first);
  }
  tokens.AT = at;
}

// From ";" at the start of a line to the next line that begins so.
TOKEN TAKE_FIELD(TOKENS& tokens, std::string_view& text) {
  const std::string_view bytes = tokens.BYTES;
  const std::size_t open = tokens.AT;
  std::size_t close = bytes.find(';', open + 1);
  while (close != std::string_view::npos && !STARTS_LINE(bytes, close))
    close = bytes.find(';', close + 1);
  if (close == std::string_view::npos) {
    text = bytes.substr(open + 1, END_OF_LINE(bytes, open) - open - 1);
    tokens.FOUND.NOTE(OPEN_FIELD, bytes.data() + open, text);
    SKIP_TO_START_OF_ITEM(tokens);
    return TOKEN::FIELD;
  }
  text = bytes.substr(open + 1, close - open - 2);
  tokens.AT = close + 1;
  return TOKEN::FIELD;
}

// The characters that may stand directly behind a closing quote; in a list of CIF 2.0 also those
// that divide it.
bool ENDS_QUOTED(std::string_view bytes, std::size_t at, bool in_list) {
  return at >= bytes.size() || IS_BLANK(bytes[at]) ||
         (in_list && std::string_view("[]{}:,").find(bytes[at]) != std::string_view::npos);
}

// ''' or """ over any number of lines; false when it never ends.
bool TAKE_TRIPLE(TOKENS& tokens, std::string_view& text) {
  constexpr std::size_t length = 3;
  const std::string_view quotes = tokens.BYTES.substr(tokens.AT, length);
  const std::size_t close = tokens.BYTES.find(quotes, tokens.AT + length);
  if (close == std::string_view::npos) return false;
  text = tokens.BYTES.substr(tokens.AT + length, close - tokens.AT - length);
  tokens.AT = close + length;
  return true;
}

bool STARTS_TRIPLE(const TOKENS& tokens) {
  const std::string_view start = tokens.BYTES.substr(tokens.AT, 3);
  return tokens.CIF2 && (start == "'''" || start == "\"\"\"");
}

// Up to a quote of the same kind that a blank follows. One that is not closed on its line holds the
// rest of the line.
TOKEN TAKE_QUOTED(TOKENS& tokens, std::string_view& text, bool in_list = false) {
  if (STARTS_TRIPLE(tokens) && TAKE_TRIPLE(tokens, text)) return TOKEN::QUOTED;
  const std::string_view bytes = tokens.BYTES;
  const std::size_t open = tokens.AT;
  const char quote = bytes[open];
  std::size_t at = open + 1;
  while (at < bytes.size() && !ENDS_LINE(bytes[at]) &&
         !(bytes[at] == quote && ENDS_QUOTED(bytes, at + 1, in_list)))
    ++at;
  text = bytes.substr(open + 1, at - open - 1);
  const bool closed = at < bytes.size() && bytes[at] == quote;
  if (!closed) {
    text = KVA_UTILITIES::LEFT_ADJUST_VIEW(text);
    tokens.FOUND.NOTE(OPEN_QUOTE, bytes.data() + open, bytes.substr(open, 1));
  }
  tokens.AT = closed ? at + 1 : at;
  return TOKEN::QUOTED;
}

// A list or table of CIF 2.0 with all that it holds.
TOKEN TAKE_LIST(TOKENS& tokens, std::string_view& text) {
  const std::string_view bytes = tokens.BYTES;
  const std::size_t open = tokens.AT;
  text = bytes.substr(open, 1);
  std::size_t depth = 0;
  while (true) {
    SKIP_BLANKS_AND_COMMENTS(tokens);
    if (tokens.AT >= bytes.size()) break;
    const char c = bytes[tokens.AT];
    std::string_view inside;
    if (c == ';' && STARTS_LINE(bytes, tokens.AT)) {
      TAKE_FIELD(tokens, inside);
    } else if (c == '\'' || c == '"') {
      TAKE_QUOTED(tokens, inside, true);
    } else {
      if (c == '[' || c == '{') ++depth;
      if (c == ']' || c == '}') --depth;
      ++tokens.AT;
    }
    if (depth == 0) return TOKEN::LIST;
  }
  tokens.FOUND.NOTE(OPEN_LIST, bytes.data() + open, text == "[" ? "]" : "}");
  tokens.AT = open + 1;
  tokens.LISTS = false;  // each would be looked through to the end of the file
  SKIP_TO_START_OF_ITEM(tokens);
  return TOKEN::LIST;
}

TOKEN TAKE_WORD(TOKENS& tokens, std::string_view& text) {
  const std::string_view bytes = tokens.BYTES;
  const std::size_t first = tokens.AT;
  tokens.AT = FIND_FROM(bytes, first, IS_BLANK);
  text = bytes.substr(first, tokens.AT - first);
  return text[0] == '_' ? TOKEN::NAME : KIND_OF_WORD(text);
}

}  // namespace

void FAULTS::NOTE(FAULT_KIND kind, const char* at, std::string_view text) {
  FAULT& fault = KINDS[kind];
  if (++fault.COUNT > 1) return;
  fault.AT = at;
  fault.TEXT = text;
}

TOKENS TOKENS_OF(std::string_view bytes) {
  constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
  constexpr std::string_view magic = "#\\#CIF_2.0";
  if (bytes.starts_with(byte_order_mark)) bytes.remove_prefix(byte_order_mark.size());
  TOKENS tokens;
  tokens.BYTES = bytes;
  tokens.CIF2 = tokens.LISTS = bytes.starts_with(magic);
  return tokens;
}

TOKEN NEXT_TOKEN(TOKENS& tokens, std::string_view& text) {
  SKIP_BLANKS_AND_COMMENTS(tokens);
  const std::string_view bytes = tokens.BYTES;
  text = {};
  tokens.START = tokens.AT;
  if (tokens.AT >= bytes.size()) return TOKEN::END;
  switch (bytes[tokens.AT]) {
    case '\'':
    case '"':
      return TAKE_QUOTED(tokens, text);
    case ';':
      return STARTS_LINE(bytes, tokens.AT) ? TAKE_FIELD(tokens, text) : TAKE_WORD(tokens, text);
    case '[':
    case '{':
      return tokens.LISTS ? TAKE_LIST(tokens, text) : TAKE_WORD(tokens, text);
    default:
      return TAKE_WORD(tokens, text);
  }
}

bool LINE_ENDS_BETWEEN(std::string_view bytes, std::size_t first, std::size_t last) {
  return END_OF_LINE(bytes.substr(0, last), first) < last;
}

int LINE_NUMBER(std::string_view bytes, const char* at) {
  const std::string_view before = bytes.substr(0, static_cast<std::size_t>(at - bytes.data()));
  const char end = bytes.find('\n') == std::string_view::npos ? '\r' : '\n';
  return 1 + static_cast<int>(std::count(before.begin(), before.end(), end));
}

}  // namespace KVA_CIFFULL
