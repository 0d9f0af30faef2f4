# tessaro_add_addon(NAME SOURCES ... RESOURCES FOLDER): builds the bundle NAME.bundle, a folder with the shared object
# NAME.so and the resources, in the folder "bundles" of the build. The sources define the entry points and the
# sett_ADDON_* constants; the framework and the bridge into the host are linked in, and the framework's own resources
# are beside the add-on's.
function(tessaro_add_addon name)
    cmake_parse_arguments(ARG "" "RESOURCES" "SOURCES" ${ARGN})
    if(NOT ARG_SOURCES OR NOT ARG_RESOURCES)
        message(FATAL_ERROR "tessaro_add_addon(${name}): SOURCES and RESOURCES are needed")
    endif()
    get_filename_component(resources "${ARG_RESOURCES}" ABSOLUTE)
    if(NOT IS_DIRECTORY "${resources}")
        message(FATAL_ERROR "tessaro_add_addon(${name}): no folder ${resources}")
    endif()
    if(NOT TESSARO_BUNDLE_DIR)
        set(TESSARO_BUNDLE_DIR "${CMAKE_BINARY_DIR}/bundles")
    endif()
    set(bundle "${TESSARO_BUNDLE_DIR}/${name}.bundle")

    add_library(${name} MODULE ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES
        PREFIX "" SUFFIX ".so"
        CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
        LIBRARY_OUTPUT_DIRECTORY "${bundle}"
        LINK_DEPENDS "${TESSARO_ADDON_EXPORTS}")
    # The bridge comes last: its image hook runs after the other objects of the module are constructed.
    target_link_libraries(${name} PRIVATE
        Tessaro::framework
        -Wl,--whole-archive Tessaro::bridge -Wl,--no-whole-archive
        Tessaro::framework)
    target_link_options(${name} PRIVATE "LINKER:--version-script=${TESSARO_ADDON_EXPORTS}" LINKER:--no-undefined
                        LINKER:--as-needed)

    file(GLOB_RECURSE files CONFIGURE_DEPENDS "${resources}/*" "${TESSARO_FRAMEWORK_RESOURCES}/*")
    set(stamp "${CMAKE_CURRENT_BINARY_DIR}/${name}.resources")
    add_custom_command(OUTPUT "${stamp}"
        COMMAND ${CMAKE_COMMAND} -E rm -rf "${bundle}/Resources"
        COMMAND ${CMAKE_COMMAND} -E copy_directory "${resources}" "${bundle}/Resources"
        COMMAND ${CMAKE_COMMAND} -E copy_directory "${TESSARO_FRAMEWORK_RESOURCES}" "${bundle}/Resources/framework"
        COMMAND ${CMAKE_COMMAND} -E touch "${stamp}"
        DEPENDS ${files}
        COMMENT "Resources of ${name}.bundle")
    add_custom_target(${name}_resources ALL DEPENDS "${stamp}")
    add_dependencies(${name} ${name}_resources)
endfunction()
