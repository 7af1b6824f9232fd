# Programs that measure the device link.
add_executable(reader_pacing reader_pacing.cpp)
target_link_libraries(reader_pacing PRIVATE mevo_app mevo_warnings)
