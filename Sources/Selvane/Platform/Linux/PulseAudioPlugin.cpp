#include "Selvane/Platform/Linux/AudioPlugin.h"
#include "Selvane/Platform/Linux/PulseClient.h"

#include <type_traits>

extern "C" [[gnu::visibility("default")]] void selvaneRunAudioClient2(selvane::AudioClientHost& host,
                                                                      int wake) {
    selvane::PulseClient(host, wake).run();
}

static_assert(std::is_same_v<decltype(&selvaneRunAudioClient2), selvane::RunAudioClient>);
