mevo_test(tst_credentials SOURCES tst_credentials.cpp APP)
