# Writes FOLDER/files.json: the quest to open (QUEST) and every file of the
# game folder, which the page loads into its memory file system.
file(GLOB names RELATIVE ${FOLDER} ${FOLDER}/*)
list(REMOVE_ITEM names files.json)
list(SORT names)
set(entries "")
foreach(name ${names})
  if(entries)
    string(APPEND entries ", ")
  endif()
  string(APPEND entries "\"${name}\"")
endforeach()
file(WRITE ${FOLDER}/files.json "{\"quest\": \"${QUEST}\", \"files\": [${entries}]}\n")
