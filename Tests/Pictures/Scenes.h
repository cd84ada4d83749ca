#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace selvane::test {

class Stage;

/// One state of the popover of which a picture is kept.
struct Scene {
    using Steps = std::vector<std::function<void(Stage&)>>;
    /// At which scales a picture is kept.
    enum class Scales { one, both };

    /// Also the name of its picture.
    std::string name;
    /// What is arranged before the popover opens.
    Steps arrange;
    /// What is done with it afterwards.
    Steps act = {};
    Scales scales = Scales::one;
};

/// For the log of a test.
void PrintTo(const Scene& scene, std::ostream* stream);

[[nodiscard]] const std::vector<Scene>& scenes();

/// The popover as `scene` has it.
void play(const Scene& scene, Stage& stage);

/// The file's name of the scene's picture at a scale: "ring-running@2x.png".
[[nodiscard]] std::string fileName(const Scene& scene, int scale);

} // namespace selvane::test
