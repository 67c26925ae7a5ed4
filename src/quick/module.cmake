# The item and its QML module, for the Qt that QT names, in the import path module_dir; `still` is
# the packed still pictures.
set(quick ${CMAKE_CURRENT_LIST_DIR})
add_library(atollia_quick STATIC
    ${quick}/Reef.cpp ${quick}/Reef.h ${quick}/ReefRenderer.cpp ${quick}/ReefSounds.cpp
    ${quick}/LentContext.cpp ${quick}/ReefTexts.cpp ${quick}/ReefTexts.h
    ${quick}/Surroundings.cpp ${quick}/Surroundings.h ${quick}/Types.cpp
    ${quick}/WindowCover.cpp ${quick}/WindowCover.h
    ${quick}/../setup/SetupLanguage.cpp ${still})
set_target_properties(atollia_quick PROPERTIES AUTOMOC ON)
pkg_check_modules(XCB_DPMS REQUIRED IMPORTED_TARGET xcb-dpms)
target_link_libraries(atollia_quick
    PUBLIC ${QT}::Quick
    PRIVATE ${QT}::DBus PkgConfig::XCB PkgConfig::XCB_DPMS)

add_library(reefplugin MODULE ${quick}/Plugin.cpp)
set_target_properties(reefplugin PROPERTIES AUTOMOC ON
    LIBRARY_OUTPUT_DIRECTORY ${module_dir}/org/atollia/reef)
target_link_libraries(reefplugin PRIVATE atollia_quick)
# In a process full of other people's libraries our names stay our own.
target_link_options(reefplugin PRIVATE -Wl,--exclude-libs,ALL -Wl,--no-undefined)
configure_file(${quick}/qmldir ${module_dir}/org/atollia/reef/qmldir COPYONLY)
