#include "platform/linux/EspeakLibrary.h"

#include <QDebug>

#include <dlfcn.h>

namespace mevo {

namespace {

template <class Function>
bool find(void *library, const char *name, Function &function)
{
    function = reinterpret_cast<Function>(dlsym(library, name)); // NOLINT: how dlsym is meant
    return function != nullptr;
}

decltype(EspeakLibrary::initialize) initializeLibrary = nullptr;

int initializeOnce(int output, int bufferMs, const char *path, int options)
{
    static const int sampleRate = initializeLibrary(output, bufferMs, path, options);
    return sampleRate;
}

} // namespace

std::optional<EspeakLibrary> loadEspeakLibrary()
{
    void *library = dlopen("libespeak-ng.so.1", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        qInfo("Speech: %s", dlerror());
        return std::nullopt;
    }
    EspeakLibrary functions{};
    if (find(library, "espeak_Initialize", initializeLibrary) &&
        find(library, "espeak_SetSynthCallback", functions.setSynthCallback) &&
        find(library, "espeak_SetVoiceByName", functions.setVoiceByName) &&
        find(library, "espeak_SetParameter", functions.setParameter) &&
        find(library, "espeak_Synth", functions.synth)) {
        functions.initialize = initializeOnce;
        return functions;
    }
    qWarning("Speech: libespeak-ng lacks a function");
    return std::nullopt;
}

} // namespace mevo
