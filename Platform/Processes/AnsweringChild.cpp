#include "AnsweringChild.h"

#include "Fork.h"
#include "OpenDescriptors.h"
#include "Pipe.h"

#include <cerrno>
#include <cstdlib>
#include <exception>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace Platform {
namespace {

Pipe pipeOrFailure()
{
    auto pipe = makePipe();
    if (!pipe)
        throw std::system_error(errno, std::generic_category());
    return std::move(*pipe);
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
            if (std::fflush(out.get()) != 0)
                _exit(EXIT_FAILURE); // to nobody
        }
    } catch (const std::exception &) {
        _exit(EXIT_FAILURE);
    }
    _exit(EXIT_SUCCESS); // what the parent had buffered is the parent's to write
}

} // namespace

AnsweringChild::AnsweringChild(const Work &work)
{
    Pipe questions = pipeOrFailure();
    Pipe answers = pipeOrFailure();
    _questions = streamOrFailure(std::move(questions.writeEnd), "wb");
    _answers = streamOrFailure(std::move(answers.readEnd), "rb");
    _child =
        forkChild([&] { answer(work, questions.readEnd.number(), answers.writeEnd.number()); });
    if (_child < 0)
        throw std::system_error(errno, std::generic_category());
}

AnsweringChild::~AnsweringChild()
{
    _questions.reset(); // its end, should the child not be killed
    endForkedChild(_child);
}

} // namespace Platform
