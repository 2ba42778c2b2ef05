# Makes PAGE, titled TITLE, of the DOCUMENTS, seen from the folder of the sources, by PANDOC. A pandoc
# that cannot is told, and leaves no page: nothing else that is built needs it.
execute_process(
  COMMAND ${PANDOC} --from gfm --to html5 --standalone --self-contained --no-highlight --toc
    --toc-depth 3 --wrap preserve --metadata title=${TITLE} --template packaging/html/page.html
    --lua-filter packaging/html/one_page.lua --output ${PAGE} ${DOCUMENTS}
  RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  file(REMOVE ${PAGE})
  message(WARNING "${PAGE} is left out: pandoc failed")
endif()
