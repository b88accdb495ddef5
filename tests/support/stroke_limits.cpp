#include "support/stroke_limits.hpp"

#include <map>

#include "support/stroke_drawing.hpp"

namespace vellis::test {
namespace {

/// \return where the picture is, or why it is not.
std::string leavePicture(const std::string& name, const offscreen::Image& image) {
    const std::string path = testing::TempDir() + "vellis-" + name + ".png";
    std::string error;
    return offscreen::writePng(path, image, error) ? "See " + path + "." : error;
}

} // namespace

const Coverage& truthOf(const StrokeScene& scene) {
    static std::map<std::string, Coverage> truths;
    const auto found = truths.find(scene.name);
    if (found != truths.end())
        return found->second;
    return truths.emplace(scene.name, sceneCoverage(scene.strokes)).first->second;
}

testing::AssertionResult isWithin(const StrokeErrors& errors, const StrokeLimits& limits) {
    const bool result =
        errors.mean() <= limits.mean && errors.percentBeyond16() <= limits.beyond16 &&
        errors.percentBeyond64() <= limits.beyond64 && errors.largest <= limits.largest;
    return (result ? testing::AssertionSuccess() : testing::AssertionFailure())
           << "of " << errors.touched << " pixels: mean error " << errors.mean() << ", beyond 16 "
           << errors.percentBeyond16() << " %, beyond 64 " << errors.percentBeyond64()
           << " %, the largest " << errors.largest;
}

testing::AssertionResult shows(const StrokeScene& scene, const offscreen::Image& image,
                               const std::string& way) {
    const double opacity = canvasOpacity(scene.strokes[0].opacity);
    const Coverage& truth = truthOf(scene);
    testing::AssertionResult result = isWithin(strokeErrors(truth, opacity, image));
    if (!result)
        result << "; " << scene.name << ". "
               << leavePicture(way + "-" + scene.name, strokeDifferences(truth, opacity, image));
    return result;
}

} // namespace vellis::test
