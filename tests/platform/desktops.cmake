# The same test under every window manager that is installed here.
function(mevo_desktop_test name)
    string(REPLACE ";" " " command "${ARGN}")
    find_program(WINDOW_MANAGER_${name} ${ARGV1})
    if(NOT TARGET tst_x11_desktops OR NOT WINDOW_MANAGER_${name} OR "${ARGN}" MATCHES "NOTFOUND")
        return()
    endif()
    add_test(NAME desktop_${name}
             COMMAND ${PROJECT_SOURCE_DIR}/lab/desk/with-desk --dbus --wm-program "${command}" -- $<TARGET_FILE:tst_x11_desktops>)
    set_tests_properties(desktop_${name} PROPERTIES TIMEOUT 120 LABELS "targets")
endfunction()

mevo_test(tst_x11_desktops SOURCES tst_x11_desktops.cpp LIBS PkgConfig::X11 mevolab_desk
          DESK --wm --dbus LABELS desk)
foreach(manager kwin_x11 metacity icewm)
    mevo_desktop_test(${manager} ${manager})
endforeach()
mevo_desktop_test(xfwm4 xfwm4 --compositor=off)
mevo_desktop_test(xfwm4_compositor xfwm4 --compositor=on)
mevo_desktop_test(mutter mutter --x11)
# Without a path it finds no program to set a background with, nor one that says in a window that this failed.
find_program(FLUXBOX fluxbox)
mevo_desktop_test(fluxbox env PATH= ${FLUXBOX})
mevo_desktop_test(i3 i3 -c ${CMAKE_CURRENT_SOURCE_DIR}/i3.conf)

mevo_test(tst_x11_targets SOURCES tst_x11_targets.cpp LIBS PkgConfig::X11 mevolab_desk DESK --wm --dbus
          LABELS targets TIMEOUT 900)
