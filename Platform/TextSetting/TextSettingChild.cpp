#include "TextSettingChild.h"

#include "AnsweringChild.h"
#include "Module.h"

#include <cstdint>
#include <cstdio>
#include <system_error>
#include <type_traits>

namespace Platform {
namespace {

// On the line between two processes of one program, things lie as they do in its memory; a list is
// the number of its elements and those.

template <class Value>
bool write(std::FILE *line, const Value &value)
{
    static_assert(std::is_trivially_copyable_v<Value>);
    return std::fwrite(&value, sizeof value, 1, line) == 1;
}

template <class Value>
bool read(std::FILE *line, Value &value)
{
    static_assert(std::is_trivially_copyable_v<Value>);
    return std::fread(&value, sizeof value, 1, line) == 1;
}

template <class List>
bool writeList(std::FILE *line, const List &list)
{
    static_assert(std::is_trivially_copyable_v<typename List::value_type>);
    return write(line, list.size()) &&
           std::fwrite(list.data(), sizeof list[0], list.size(), line) == list.size();
}

template <class List>
bool readList(std::FILE *line, List &list)
{
    typename List::size_type size = 0;
    if (!read(line, size))
        return false;
    list.resize(size);
    return std::fread(list.data(), sizeof list[0], size, line) == size;
}

/// What the child is asked.
struct Question {
    std::string text;
    std::string fontName;
    double size = 0;
};

bool write(std::FILE *line, const Question &question)
{
    return writeList(line, question.text) && writeList(line, question.fontName) &&
           write(line, question.size) && std::fflush(line) == 0;
}

bool read(std::FILE *line, Question &question)
{
    return readList(line, question.text) && readList(line, question.fontName) &&
           read(line, question.size);
}

/// What it says: a text, or why there is none.
struct Answer {
    ShapedText text = {};
    std::string failure = {};
};

bool write(std::FILE *line, const Answer &answer)
{
    const ShapedText &text = answer.text;
    return writeList(line, answer.failure) && write(line, text.advance) &&
           write(line, text.ascent) && write(line, text.descent) && write(line, text.lineGap) &&
           writeList(line, text.outline) && writeList(line, text.glyphs) &&
           write(line, text.missing) && std::fflush(line) == 0;
}

bool read(std::FILE *line, Answer &answer)
{
    ShapedText &text = answer.text;
    return readList(line, answer.failure) && read(line, text.advance) && read(line, text.ascent) &&
           read(line, text.descent) && read(line, text.lineGap) && readList(line, text.outline) &&
           readList(line, text.glyphs) && read(line, text.missing);
}

/// The child's life.
void answerQuestions(std::FILE *questions, std::FILE *answers)
{
    std::unique_ptr<TextSetter> setter;
    Answer answer;
    try {
        callModule<std::unique_ptr<TextSetter> &>("KLTextMeasuringModule.so", "KLMakeTextSetter",
                                                  setter);
        setter->prepare();
    } catch (const ModuleError &error) {
        answer.failure = error.what();
    }
    for (Question question; read(questions, question);) {
        if (setter)
            answer.text = setter->shape(question.text, question.fontName, question.size);
        if (!write(answers, answer))
            return;
    }
}

} // namespace

TextSettingChild::TextSettingChild() = default;

TextSettingChild::~TextSettingChild() = default;

void TextSettingChild::prepare()
try {
    if (!_child)
        _child = std::make_unique<AnsweringChild>(&answerQuestions);
} catch (const std::system_error &error) {
    throw TextSettingError(error.code().message());
}

ShapedText TextSettingChild::shape(const std::string &text, const std::string &fontName,
                                   double size)
{
    prepare();
    Answer answer;
    if (!write(_child->questions(), Question{text, fontName, size}) ||
        !read(_child->answers(), answer))
        throw TextSettingError("The process that sets texts has ended");
    if (!answer.failure.empty())
        throw TextSettingError(answer.failure);
    return std::move(answer.text);
}

void TextSettingChild::forgetFonts()
{
    _child.reset();
}

} // namespace Platform
