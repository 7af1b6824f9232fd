#pragma once

#include "platform/linux/PulseInputs.h"
#include "support/FakePlatform.h"

#include <memory>

/// Fakes, and the sound server's real microphone among them.
struct ListeningPlatform : FakePlatform
{
    ListeningPlatform()
    {
        soundInputs = nullptr;
        platform.soundInputs = std::make_unique<mevo::PulseInputs>();
    }
};
