# Below a prefix the programs stand as in a portable folder, where they find each other:
#   lib/mevoinput/PatchRunner, lib/mevoinput/App/mevoinput and KeypadHost beside it,
#   lib/mevoinput/lab/mevolab; bin/ holds links to them.
set(MEVO_INSTALL_BASE ${CMAKE_INSTALL_LIBDIR}/mevoinput)
set(MEVO_INSTALL_PROGRAM ${MEVO_INSTALL_BASE}/App)
set(MEVO_INSTALL_DATA ${CMAKE_INSTALL_DATADIR}/mevoinput)

# From the program's folder to the shipped files, so that the whole prefix can be moved.
file(RELATIVE_PATH MEVO_SHIPPED_FOLDER
    ${CMAKE_INSTALL_FULL_LIBDIR}/mevoinput/App ${CMAKE_INSTALL_FULL_DATADIR}/mevoinput)

# mevo_install_link(NAME TARGET_FILE): bin/NAME, a link to a file below the prefix.
function(mevo_install_link name file)
    file(RELATIVE_PATH target /${CMAKE_INSTALL_BINDIR} /${file})
    set(link ${CMAKE_CURRENT_BINARY_DIR}/links/${name})
    file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/links)
    file(CREATE_LINK ${target} ${link} SYMBOLIC)
    install(FILES ${link} DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()
