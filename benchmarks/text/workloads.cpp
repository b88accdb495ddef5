#include "text/workloads.hpp"

#include <memory>
#include <utility>

#include <vellis/canvas.hpp>
#include <vellis/gl.hpp>
#include <vellis/text/draw.hpp>

#include "canvas/scenes.hpp"
#include "text/quads.hpp"
#include "text/words.hpp"

#ifdef VELLIS_HAS_IMGUI
#include "text/imgui.hpp"
#endif

namespace vellis::bench {
namespace {

class RawWords {
public:
    explicit RawWords(unsigned int size) : quads_(*loadFont(), words(size)) {}
    void operator()() const { quads_.draw(); }

private:
    PlainQuads quads_;
};

/// A batch with words.
struct Words {
    explicit Words(unsigned int size) : list(words(size)) {}
    void operator()() const {
        canvas->begin(matrix);
        draw();
        canvas->end();
    }
    void draw() const {
        for (const Word& word : list)
            text::draw(canvas, font, word.corner, word.text, sceneColor);
    }
    std::vector<Word> list;
    std::shared_ptr<text::Font> font = loadFont();
    std::shared_ptr<Canvas> canvas = Canvas::make();
    glm::mat4 matrix = pixelsToClip();
};

struct PictureWords : Words {
    explicit PictureWords(unsigned int size) : Words(size) {
        canvas->beginPicture(glm::mat4(1.f));
        draw();
        picture = canvas->endPicture();
    }
    void operator()() const {
        canvas->begin(matrix);
        canvas->drawPicture(picture);
        canvas->end();
    }
    std::shared_ptr<Picture> picture;
};

template <class Draw>
std::vector<unsigned char> pixelsOf() {
    constexpr unsigned int numWords = 100;
    glClearColor(1.f, 1.f, 1.f, 1.f);
    glClear(GL_COLOR_BUFFER_BIT);
    Draw drawing(numWords);
    drawing();
    std::vector<unsigned char> pixels(std::size_t{pictureSize} * pictureSize * 4);
    glReadPixels(0, 0, pictureSize, pictureSize, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    return pixels;
}

Workload workload(const char* name, Where where, std::vector<Implementation> sides) {
    Workload result = {};
    result.name = name;
    result.implementations = std::move(sides);
#ifdef VELLIS_HAS_IMGUI
    result.implementations.push_back({"imgui", makeSide<ImguiWords>});
#endif
    result.where = where;
    result.sizes = {10000};
    return result;
}

} // namespace

std::vector<Workload> textWorkloads() {
    return {workload("words/kept", Where::Driver,
                     {{"raw", makeSide<RawWords>},
                      {"vellis", makeSide<Words>},
                      {"picture", makeSide<PictureWords>}}),
            workload("words/calls", Where::NullDriver, {{"vellis", makeSide<Words>}})};
}

bool haveSamePixels() {
    return pixelsOf<RawWords>() == pixelsOf<Words>();
}

} // namespace vellis::bench
