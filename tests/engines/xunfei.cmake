mevo_test(tst_xunfei SOURCES tst_xunfei.cpp LABELS unit)
if(NOT MEVO_CORE_ONLY)
    mevo_test(tst_xunfei_stream SOURCES tst_xunfei_stream.cpp LIBS mevolab_services APP)
endif()
