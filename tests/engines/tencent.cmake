mevo_test(tst_tencent SOURCES tst_tencent.cpp LABELS unit)
mevo_test(tst_tencent_speech SOURCES tst_tencent_speech.cpp LIBS mevolab_services APP)
