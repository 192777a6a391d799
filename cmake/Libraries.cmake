# The libraries, and how each is linked.
#
# What the first frame needs is linked statically where the distribution ships an archive: a shared library costs the
# start 0.1 to 0.5 ms each, and this program's start is its whole life. What it does not need (GLib, GIO, Pango,
# gdk-pixbuf) stays out of the program and behind the desktop module, which is loaded on first use.
if(WIN32)
  return()
endif()

find_package(PkgConfig REQUIRED)

# orb_static_library(target pkg-config-name archive...): an imported target of static archives, or of the shared
# library where an archive is missing (or under the sanitizers, which want every symbol).
function(orb_static_library target package)
  pkg_check_modules(pc_${target} REQUIRED ${package})
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE ${pc_${target}_INCLUDE_DIRS})
  set(archives)
  foreach(name ${ARGN})
    find_library(archive_${name} lib${name}.a)
    if(archive_${name})
      list(APPEND archives ${archive_${name}})
    endif()
  endforeach()
  list(LENGTH archives found)
  list(LENGTH ARGN wanted)
  if(found EQUAL wanted)
    target_link_libraries(${target} INTERFACE ${archives})
  else()
    target_link_directories(${target} INTERFACE ${pc_${target}_LIBRARY_DIRS})
    target_link_libraries(${target} INTERFACE ${pc_${target}_LIBRARIES})
  endif()
endfunction()

orb_static_library(orb_pixman pixman-1 pixman-1)
orb_static_library(orb_freetype freetype2 freetype png16 z brotlidec brotlicommon)
orb_static_library(orb_sqlite sqlite3 sqlite3)
orb_static_library(orb_xcb_shm xcb-shm xcb-shm)
orb_static_library(orb_xcb_randr xcb-randr xcb-randr)
orb_static_library(orb_xcb_shape xcb-shape xcb-shape)
orb_static_library(orb_xcb_xinput xcb-xinput xcb-xinput)
orb_static_library(orb_xcb_xkb xcb-xkb xcb-xkb)
target_link_libraries(orb_pixman INTERFACE m)
target_link_libraries(orb_freetype INTERFACE m)
target_link_libraries(orb_sqlite INTERFACE m)
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET GLOBAL xcb)
pkg_check_modules(DESKTOP REQUIRED IMPORTED_TARGET GLOBAL gio-unix-2.0 pangocairo pangoft2 gdk-pixbuf-2.0 librsvg-2.0
                  fontconfig libgnome-menu-3.0)
pkg_check_modules(XKBCOMMON REQUIRED IMPORTED_TARGET GLOBAL xkbcommon xkbcommon-x11)
pkg_check_modules(IMDKIT REQUIRED IMPORTED_TARGET GLOBAL xcb-imdkit)
pkg_check_modules(XCB_CURSOR REQUIRED IMPORTED_TARGET GLOBAL xcb-cursor)
find_package(Threads REQUIRED)
