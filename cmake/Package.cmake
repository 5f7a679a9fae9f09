# Installation, the CMake package, the pkg-config file and the Debian packages. Every path in what is installed is
# relative: the folder may be moved afterwards.
include(CMakePackageConfigHelpers)

set(libraries 3dGraphics hostFoundation hostUi hostCommandEngine hostImage hostGraphicsResources)
if(TARGET hostScript)
    list(APPEND libraries hostScript)
endif()
set(packageDirectory ${CMAKE_INSTALL_LIBDIR}/cmake/3dGraphics)

set_target_properties(${libraries} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    INSTALL_RPATH $ORIGIN)
file(RELATIVE_PATH programToLibraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set_target_properties(portview PROPERTIES INSTALL_RPATH $ORIGIN/${programToLibraries})

install(TARGETS ${libraries} EXPORT 3dGraphicsTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)
install(TARGETS portview DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT viewer)

# Headers that no header of the interface includes and no host needs.
set(privateHeaders
    GlxMDrawBinding QlirnForwardingGLContext QlirnGLPixmapContext QlirnNativeWindow QlirnShownPixels T3dPortAudit
    TglPixelStoreGuard TunitShapes)
list(JOIN privateHeaders "|" privateHeaders)
foreach(folder 3dGraphics hostKit)
    install(DIRECTORY ${folder}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder} COMPONENT development
        FILES_MATCHING PATTERN *.h REGEX "/(${privateHeaders})\\.h$" EXCLUDE)
endforeach()

install(EXPORT 3dGraphicsTargets NAMESPACE 3dGraphics:: DESTINATION ${packageDirectory} COMPONENT development)
configure_package_config_file(cmake/3dGraphicsConfig.cmake.in ${PROJECT_BINARY_DIR}/package/3dGraphicsConfig.cmake
    INSTALL_DESTINATION ${packageDirectory})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/3dGraphicsConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/package/3dGraphicsConfig.cmake
    ${PROJECT_BINARY_DIR}/package/3dGraphicsConfigVersion.cmake
    DESTINATION ${packageDirectory} COMPONENT development)

# Qt's OpenGL headers warn after <GL/gl.h>, unless they are the system's. What pkg-config says of them is then left out.
list(FILTER Qt5Gui_INCLUDE_DIRS EXCLUDE REGEX mkspecs)
list(TRANSFORM Qt5Gui_INCLUDE_DIRS PREPEND "-isystem " OUTPUT_VARIABLE qtFlags)
list(JOIN qtFlags " " qtFlags)
file(RELATIVE_PATH prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
foreach(name 3dGraphics 3dGraphics-motif)
    configure_file(cmake/${name}.pc.in ${PROJECT_BINARY_DIR}/package/${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/package/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development)
endforeach()

install(FILES README.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development PATTERN Doxyfile EXCLUDE)
install(DIRECTORY examples/minimal examples/motif examples/models examples/scripts
    DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples COMPONENT development)

# cpack -G DEB
set(CPACK_PACKAGE_NAME 3dgraphics)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_PACKAGE_CONTACT "The authors of 3dGraphics <3dgraphics@localhost>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development viewer)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)

set(runtimePackage lib3dgraphics${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtimePackage})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "Drawing layer of interactive 3D applications
One drawing port per 3D view, which owns its window's OpenGL context, keeps
matrix stacks, lights and render state, and sends OpenGL only what changed.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME lib3dgraphics-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_GENERATE_SHLIBS OFF)
string(CONCAT CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "${runtimePackage} (= ${PROJECT_VERSION}), libgl-dev, libglu1-mesa-dev, libglx-dev, libmotif-dev, libopengl-dev, "
    "libqt5opengl5-dev, libqt5x11extras5-dev, libtinyxml-dev, libx11-dev, libxt-dev, pkg-config, qtbase5-dev")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "Drawing layer of interactive 3D applications (development files)
Headers, CMake package, pkg-config file, documentation and examples.")

set(CPACK_DEBIAN_VIEWER_PACKAGE_NAME portview)
set(CPACK_DEBIAN_VIEWER_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_VIEWER_PACKAGE_DEPENDS "${runtimePackage} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_VIEWER_DESCRIPTION "Viewer of OBJ models
Shows models in one view or four, picks in them, and takes pictures.")

include(CPack)
