// Scene files and the ini class below them: no text may crash them, and an ini text that is written
// back reads the same again.
#include "simulator/Scene.h"
#include "support/IniFile.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::string written = vorel::TIniFile(text).ToText();
    if (vorel::TIniFile(written).ToText() != written) {
        std::abort();
    }
    try {
        const vorel::sim::TScene scene = vorel::sim::TScene::Parse(text);
        for (const vorel::sim::ScenePod& pod : scene.Pods) {
            pod.CreateTarget();
        }
        scene.CreateParallelPorts();
    } catch (const vorel::sim::ESceneError&) {
        return 0; // what a text that is no scene deserves
    }
    return 0;
}
