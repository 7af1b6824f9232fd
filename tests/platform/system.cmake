mevo_test(tst_system_services SOURCES tst_system_services.cpp APP)
mevo_test(tst_system_bus SOURCES tst_system_bus.cpp LIBS PkgConfig::X11 DESK --dbus)
mevo_test(tst_secret_store SOURCES tst_secret_store.cpp APP)
mevo_test(tst_audio_router SOURCES tst_audio_router.cpp DESK --pulse)
