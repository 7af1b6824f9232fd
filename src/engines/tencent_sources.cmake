mevo_core_sources(
    engines/Tc3Signature.cpp
    engines/Tc3Signature.h
    engines/TencentCredentials.cpp
    engines/TencentCredentials.h
    engines/TencentReply.cpp
    engines/TencentReply.h
    engines/TencentRequest.cpp
    engines/TencentRequest.h
    engines/WavImage.cpp
    engines/WavImage.h)

mevo_app_sources(
    engines/CurlPost.cpp
    engines/CurlPost.h
    engines/TencentSpeech.cpp
    engines/TencentSpeech.h)
