# Run inside a desk: lab/desk/with-desk --pulse -- build/release/bin/recorder_latency
add_executable(recorder_latency recorder_latency.cpp BarePulse.cpp)
target_include_directories(recorder_latency PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_link_libraries(recorder_latency PRIVATE mevo_app mevo_test_support Qt5::Test mevo_warnings PkgConfig::PULSE)
# The same with build/release/bin/xunfei_latency
add_executable(xunfei_latency xunfei_latency.cpp)
target_include_directories(xunfei_latency PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_link_libraries(xunfei_latency PRIVATE mevo_app mevo_test_support mevolab_services Qt5::Test mevo_warnings)
