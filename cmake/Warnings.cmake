# Warnings for our own code only: Qt and the libraries come in as system headers.
add_library(mevo_warnings INTERFACE)
target_compile_options(mevo_warnings INTERFACE
    $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wshadow -Wconversion -Wnon-virtual-dtor -Werror>)
target_compile_definitions(mevo_warnings INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_MESSAGELOGCONTEXT
    $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
