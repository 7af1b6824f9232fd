# Installs a build into a scratch prefix and looks at what stands there.
#   BUILD, SCRATCH  the build's folder; one that this may remove
#   LIB             the library folder below the prefix
#   PROBE           prints the folder of the application files of a program that stands where it stands
#   NOTICE_PAGE     whether the build has the plug-in for notices' pages
cmake_minimum_required(VERSION 3.24)
set(failures 0)
macro(fail text)
    message("${text}")
    math(EXPR failures "${failures} + 1")
endmacro()

file(REMOVE_RECURSE ${SCRATCH})
set(prefix ${SCRATCH}/moved)
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${prefix}
                OUTPUT_QUIET RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "the installation fails: ${result}")
endif()

set(wanted
    bin/mevoinput
    bin/mevolab
    ${LIB}/mevoinput/App/KeypadHost
    ${LIB}/mevoinput/App/mevoinput
    ${LIB}/mevoinput/PatchRunner
    ${LIB}/mevoinput/lab/mevolab
    ${LIB}/mevoinput/lib/libmevolab-preload-fix.so
    lib/udev/rules.d/70-mevoinput.rules
    share/applications/mevoinput.desktop
    share/icons/hicolor/128x128/apps/mevoinput.png
    share/icons/hicolor/16x16/apps/mevoinput.png
    share/icons/hicolor/24x24/apps/mevoinput.png
    share/icons/hicolor/256x256/apps/mevoinput.png
    share/icons/hicolor/32x32/apps/mevoinput.png
    share/icons/hicolor/48x48/apps/mevoinput.png
    share/icons/hicolor/64x64/apps/mevoinput.png
    share/icons/hicolor/scalable/apps/mevoinput.svg
    share/man/man1/KeypadHost.1
    share/man/man1/PatchRunner.1
    share/man/man1/mevoinput.1
    share/man/man1/mevolab.1
    share/metainfo/org.mevoinput.mevoinput.metainfo.xml
    share/mevoinput/MEVKeysSetting.ini
    share/mevoinput/MEVOEndpoints.ini
    share/mevoinput/MEVOInputCmdWordTable.ini
    share/mevoinput/MEVOInputCmdWordTable_Directory.ini
    share/mevoinput/MEVOInputCmdWordTable_File.ini
    share/mevoinput/MEVOInputCmdWordTable_Phrase.ini
    share/mevoinput/MEVOInputCmdWordTable_PinyinKeyboard.ini
    share/mevoinput/MEVOInputCmdWordTable_Shortcut.ini
    share/mevoinput/MEVOInputCmdWordTable_VoiceKeyboard.ini
    share/mevoinput/MEVOInputCmdWordTable_Web.ini
    share/mevoinput/MEVOSetting.ini)
if(NOTICE_PAGE)
    list(APPEND wanted ${LIB}/mevoinput/App/libmevo-notice-page.so)
endif()
file(GLOB_RECURSE present RELATIVE ${prefix} ${prefix}/*)
foreach(file ${wanted})
    if(NOT file IN_LIST present OR NOT EXISTS ${prefix}/${file})
        fail("missing: ${file}")
    endif()
endforeach()
list(REMOVE_ITEM present ${wanted})
if(present)
    fail("installed, but not expected: ${present}")
endif()

# run(CODE TEXT COMMAND...): the command ends with CODE and says TEXT.
function(run code text)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE said ERROR_VARIABLE said TIMEOUT 60)
    string(FIND "${said}" "${text}" at)
    if(NOT result STREQUAL code OR at EQUAL -1)
        fail("${ARGN}: ended with ${result}, not ${code}, or does not say \"${text}\": ${said}")
        set(failures ${failures} PARENT_SCOPE)
    endif()
endfunction()

# None of these opens a display.
set(alone ${CMAKE_COMMAND} -E env --unset=DISPLAY --unset=WAYLAND_DISPLAY --unset=QT_QPA_PLATFORM --unset=MEVO_HOME)
run(0 "mevoinput V1.07" ${alone} ${prefix}/bin/mevoinput --version)
run(0 "Usage: mevoinput" ${alone} ${prefix}/bin/mevoinput --help)
run(2 "unknown option: --nothing" ${alone} ${prefix}/bin/mevoinput --nothing)
run(2 "unknown word: nothing" ${alone} ${prefix}/${LIB}/mevoinput/App/KeypadHost nothing)
run(1 "no X display" ${alone} XDG_RUNTIME_DIR=${SCRATCH} ${prefix}/${LIB}/mevoinput/App/KeypadHost ORVKBAppHide)
run(2 "usage: mevolab" ${alone} ${prefix}/bin/mevolab)

# In a folder of the user's own the files come to the program.
set(program ${prefix}/${LIB}/mevoinput/App)
configure_file(${PROBE} ${program}/probe COPYONLY)
file(REAL_PATH ${program} real)
run(0 "${real}\n" ${alone} ${program}/probe)
foreach(file MEVOSetting.ini MEVOInputCmdWordTable_Web.ini)
    execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${program}/${file} ${prefix}/share/mevoinput/${file}
                    RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        fail("${file} has not come to the program from the shipped files")
    endif()
endforeach()
file(WRITE ${program}/MEVOSetting.ini "[MainSetting]\nmine=1\n")
run(0 "${real}\n" ${alone} ${program}/probe)
file(READ ${program}/MEVOSetting.ini kept)
if(NOT kept STREQUAL "[MainSetting]\nmine=1\n")
    fail("the user's own settings are gone: ${kept}")
endif()

# With a folder elsewhere the shipped files come from the installation, not from what the user has beside the
# program.
set(elsewhere ${SCRATCH}/elsewhere)
run(0 "${elsewhere}\n" ${alone} MEVO_HOME=${elsewhere} ${program}/probe)
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${elsewhere}/MEVOSetting.ini ${prefix}/share/mevoinput/MEVOSetting.ini
                RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    fail("the settings beside the program have been taken for shipped ones")
endif()

# What other programs read is in order, where their checkers are installed.
foreach(checker "desktop-file-validate;${prefix}/share/applications/mevoinput.desktop"
                "appstreamcli;validate;--no-net;${prefix}/share/metainfo/org.mevoinput.mevoinput.metainfo.xml")
    list(POP_FRONT checker name)
    find_program(found_${name} ${name})
    if(found_${name})
        run(0 "" ${found_${name}} ${checker})
    else()
        message("left out: ${name} is not installed")
    endif()
endforeach()

if(failures GREATER 0)
    message(FATAL_ERROR "${failures} faults of the installation")
endif()
file(REMOVE_RECURSE ${SCRATCH})
