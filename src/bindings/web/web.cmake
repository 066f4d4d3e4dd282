# The web build: the rule layers, the headless binding and the browser's
# binding compiled to WebAssembly by emscripten, from the same sources as the
# desktop's. Of the platform layer it takes what a browser has (files, the
# clock, the dice); starting processes, the packager's runtime search and
# FluidSynth are left out, and their services come from the web build's own
# backends. One optimisation level for everything, so each file compiles once.
#
# Two programs come out of it:
#   fablewright-script.js/.wasm  the script runner, for node, on the host's
#                                own files (the scenario suite)
#   site/                        the page: fablewright.js/.wasm, web/'s HTML,
#                                CSS and JavaScript, the art and the fonts

set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
add_compile_options(-fexceptions)
add_link_options(-O2 -fexceptions -sALLOW_MEMORY_GROWTH=1)

fw_layer(fw_forms forms)
target_compile_definitions(fw_forms PUBLIC FABLEWRIGHT_VERSION="${PROJECT_VERSION}")
fw_layer(fw_store store LINKS fw_forms)
fw_layer(fw_media media LINKS fw_forms)
fw_layer(fw_platform platform LINKS fw_media EXCLUDE real_services.cpp linked_runtime.cpp graphviz_layout.cpp)
fw_layer(fw_play play LINKS fw_store fw_media)
fw_layer(fw_editor editor LINKS fw_play)
fw_layer(fw_packager packager LINKS fw_store)
fw_project_licence(fw_packager)
fw_layer(fw_shell shell LINKS fw_play fw_editor fw_packager)
fw_layer(fw_headless bindings/headless LINKS fw_shell fw_platform)
fw_layer(fw_web bindings/web LINKS fw_play fw_platform)

# The app layer's parts that the web build uses.
set(WEB_APP ${PROJECT_SOURCE_DIR}/src/app)
add_library(fw_web_app STATIC ${WEB_APP}/command_args.cpp ${WEB_APP}/web_assembly.cpp ${WEB_APP}/web_map_standin.cpp)
file(MAKE_DIRECTORY ${LAYER_ROOTS}/fw_app)
file(CREATE_LINK ${PROJECT_SOURCE_DIR}/src/app ${LAYER_ROOTS}/fw_app/app SYMBOLIC)
target_include_directories(fw_web_app PUBLIC ${LAYER_ROOTS}/fw_app)
target_link_libraries(fw_web_app PUBLIC fw_shell fw_platform fw_headless)

add_executable(fablewright-script ${WEB_APP}/web_script_main.cpp)
target_link_libraries(fablewright-script PRIVATE fw_web_app)
target_link_options(fablewright-script PRIVATE -sENVIRONMENT=node -sNODERAWFS=1 -sEXIT_RUNTIME=1
  --pre-js ${CMAKE_CURRENT_LIST_DIR}/node_env.js)
set_target_properties(fablewright-script PROPERTIES LINK_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/node_env.js)
set_target_properties(fablewright-script PROPERTIES SUFFIX ".js" RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})

# node runs the script runner the way the desktop's program is run, so the
# scenario suite starts either the same way.
file(WRITE ${PROJECT_BINARY_DIR}/fablewright-node
  "#!/bin/sh\nexec node --no-experimental-fetch \"${PROJECT_BINARY_DIR}/fablewright-script.js\" \"$@\"\n")
file(CHMOD ${PROJECT_BINARY_DIR}/fablewright-node PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
  GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# The page. The engine waits in the rules' blocking calls through Asyncify;
# the page's script (web/page.js) fills the file system before it starts.
add_executable(fablewright-page ${WEB_APP}/web_page_main.cpp)
target_link_libraries(fablewright-page PRIVATE fw_web_app fw_web)
target_link_options(fablewright-page PRIVATE -sENVIRONMENT=web -sASYNCIFY -sASYNCIFY_STACK_SIZE=262144
  -sFORCE_FILESYSTEM=1 -lidbfs.js -sINVOKE_RUN=0 -sEXIT_RUNTIME=0
  "-sEXPORTED_RUNTIME_METHODS=['FS','IDBFS','callMain','UTF8ToString','allocateUTF8']")
set(SITE ${PROJECT_BINARY_DIR}/site)
set_target_properties(fablewright-page PROPERTIES OUTPUT_NAME fablewright SUFFIX ".js" RUNTIME_OUTPUT_DIRECTORY ${SITE})

# The page's own files, the art and the fonts the forms are drawn in.
set(WEB_PAGE_FILES ${PROJECT_SOURCE_DIR}/web/index.html ${PROJECT_SOURCE_DIR}/web/style.css ${PROJECT_SOURCE_DIR}/web/page.js)
file(GLOB ART_DRAWINGS CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/art/*.svg)
set(WEB_FONTS
  /usr/share/fonts/truetype/liberation2/LiberationSans-Regular.ttf
  /usr/share/fonts/truetype/liberation2/LiberationSans-Bold.ttf
  /usr/share/fonts/truetype/liberation2/LiberationSerif-Regular.ttf
  /usr/share/fonts/truetype/liberation2/LiberationSerif-Bold.ttf
  /usr/share/fonts/truetype/dejavu/DejaVuSans.ttf
  /usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf)
add_custom_target(site ALL
  COMMAND ${CMAKE_COMMAND} -E make_directory ${SITE}/art ${SITE}/fonts
  COMMAND ${CMAKE_COMMAND} -E copy_if_different ${WEB_PAGE_FILES} ${SITE}/
  COMMAND ${CMAKE_COMMAND} -E copy_if_different ${ART_DRAWINGS} ${SITE}/art/
  COMMAND ${CMAKE_COMMAND} -E copy_if_different ${WEB_FONTS} ${SITE}/fonts/
  DEPENDS ${WEB_PAGE_FILES} ${ART_DRAWINGS}
  COMMENT "Laying out the page in site/")

# The demo quest the page plays, in site/game/ with its media (made from
# numbers by the same maker as the desktop's, run under node) and the list
# of files the page loads.
add_executable(fablewright-demo-media ${PROJECT_SOURCE_DIR}/quests/make_demo_media.cpp)
target_link_libraries(fablewright-demo-media PRIVATE fw_media)
target_link_options(fablewright-demo-media PRIVATE -sENVIRONMENT=node -sNODERAWFS=1 -sEXIT_RUNTIME=1)
set_target_properties(fablewright-demo-media PROPERTIES SUFFIX ".js")
set(SITE_GAME ${SITE}/game)
add_custom_command(OUTPUT ${SITE_GAME}/files.json
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${SITE_GAME}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${SITE_GAME}
  COMMAND ${CMAKE_COMMAND} -E copy ${PROJECT_SOURCE_DIR}/quests/demo/demo.fbw ${SITE_GAME}/
  COMMAND node --no-experimental-fetch $<TARGET_FILE:fablewright-demo-media> ${SITE_GAME}
  COMMAND ${CMAKE_COMMAND} -DFOLDER=${SITE_GAME} -DQUEST=demo.fbw -P ${CMAKE_CURRENT_LIST_DIR}/game_files.cmake
  DEPENDS fablewright-demo-media ${PROJECT_SOURCE_DIR}/quests/demo/demo.fbw ${CMAKE_CURRENT_LIST_DIR}/game_files.cmake
  COMMENT "Laying out the demo quest in site/game/")
add_custom_target(site-game ALL DEPENDS ${SITE_GAME}/files.json)
