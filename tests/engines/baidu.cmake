mevo_test(tst_credentials SOURCES tst_credentials.cpp APP)
mevo_test(tst_baidu_speech SOURCES tst_baidu_speech.cpp APP)
