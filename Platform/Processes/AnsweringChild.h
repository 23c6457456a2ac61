#pragma once

#include "Streams.h"

#include <cstdio>
#include <functional>
#include <sys/types.h>

namespace Platform {

/// A forked child that answers questions: for a library whose memory is to be given back when it is
/// no longer needed, and whose crash is to be no more than an answer that does not come.
///
/// The child has this process' memory as it was and its standard error; no other open file. Its
/// standard input and output are what questions come from and answers go to. It is killed when this
/// process ends, and ended when the run is cancelled (Cancellation.h). One child at a time, one
/// thread. This process' own standard streams must be open.
class AnsweringChild {
public:
    /// What the child does: it reads questions to their end, and writes answers. What it throws, if
    /// a std::exception, ends the child.
    using Work = std::function<void(std::FILE *questions, std::FILE *answers)>;

    /// @throws std::system_error when there is no child
    explicit AnsweringChild(const Work &work);
    /// Kills the child, and waits for it.
    ~AnsweringChild();
    AnsweringChild(const AnsweringChild &) = delete;
    AnsweringChild &operator=(const AnsweringChild &) = delete;

    /// To write questions to, and to be flushed behind each. When the child is gone, writing fails
    /// and raises SIGPIPE.
    std::FILE *questions() const { return _questions.get(); }
    /// To read answers from; at its end when the child is gone.
    std::FILE *answers() const { return _answers.get(); }

private:
    Stream _questions;
    Stream _answers;
    pid_t _child = 0;
};

} // namespace Platform
