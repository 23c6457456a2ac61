#include "AnsweringChild.h"

#include "Fork.h"
#include "OpenDescriptors.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace Platform {
namespace {

struct Pipe {
    Descriptor readingEnd;
    Descriptor writingEnd;
};

Pipe makePipe()
{
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::system_error(errno, std::generic_category());
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

Stream streamOrFailure(Descriptor end, const char *mode)
{
    Stream stream = streamOf(std::move(end), mode);
    if (!stream)
        throw std::system_error(errno, std::generic_category());
    return stream;
}

[[noreturn]] void answer(const AnsweringChild::Work &work, int questions, int answers)
{
    if (dup2(questions, STDIN_FILENO) < 0 || dup2(answers, STDOUT_FILENO) < 0)
        _exit(EXIT_FAILURE);
    closeDescriptorsFrom(STDERR_FILENO + 1);
    const Stream in = streamOf(Descriptor(STDIN_FILENO), "rb");
    const Stream out = streamOf(Descriptor(STDOUT_FILENO), "wb");
    try {
        if (in && out) {
            work(in.get(), out.get());
            std::fflush(out.get());
        }
    } catch (const std::exception &) {
        _exit(EXIT_FAILURE);
    }
    _exit(EXIT_SUCCESS); // what the parent had buffered is the parent's to write
}

} // namespace

AnsweringChild::AnsweringChild(const Work &work)
{
    Pipe questions = makePipe();
    Pipe answers = makePipe();
    _questions = streamOrFailure(std::move(questions.writingEnd), "wb");
    _answers = streamOrFailure(std::move(answers.readingEnd), "rb");
    _child = forkChild(
        [&] { answer(work, questions.readingEnd.number(), answers.writingEnd.number()); });
    if (_child < 0)
        throw std::system_error(errno, std::generic_category());
}

AnsweringChild::~AnsweringChild()
{
    _questions.reset(); // its end, should the child not be killed
    endForkedChild(_child);
}

} // namespace Platform
