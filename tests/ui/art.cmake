if(NOT MEVO_CORE_ONLY)
    mevo_test(tst_art SOURCES tst_art.cpp LIBS Qt5::Gui mevo_resources LABELS ui)
    target_compile_definitions(tst_art PRIVATE MEVO_SOURCES="${PROJECT_SOURCE_DIR}/src")

    # Where no font has Chinese characters the build must stop with a reason, not paint boxes.
    file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/no-fonts.conf
        "<?xml version=\"1.0\"?>\n<fontconfig><cachedir>${CMAKE_CURRENT_BINARY_DIR}/no-fonts</cachedir></fontconfig>\n")
    add_test(NAME art_refuses_without_chinese_font COMMAND mevo_art ${CMAKE_CURRENT_BINARY_DIR}/never)
    set_tests_properties(art_refuses_without_chinese_font PROPERTIES LABELS ui TIMEOUT 60
        ENVIRONMENT "FONTCONFIG_FILE=${CMAKE_CURRENT_BINARY_DIR}/no-fonts.conf;ASAN_OPTIONS=detect_leaks=0"
        PASS_REGULAR_EXPRESSION "no font here has the Chinese characters")
endif()
