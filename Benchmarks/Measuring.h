#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

// What the benchmarks share: children that are measured one at a time, in turns, and a table of
// what they took.

/// An unnamed file.
class Input {
public:
    /// @param fill  writes the bytes
    explicit Input(const std::function<void(FILE *)> &fill);
    /// So many zero bytes, which take no room on the disk.
    explicit Input(std::size_t zeros);
    ~Input();
    Input(const Input &) = delete;
    Input &operator=(const Input &) = delete;

    /// Stands at the start of the file; stays this object's.
    int descriptor() const;

    /// A name under which another program can open the file as long as this object lives.
    std::string path() const;

private:
    FILE *_file;
};

/// How the input reaches the child's standard input.
enum class Feed {
    file, ///< as it is
    pipe, ///< through a pipe that another process fills
};

/// What one run of a child took.
struct Sample {
    double processorSeconds = 0; ///< user and system, of the child alone
    double elapsedSeconds = 0;   ///< from before the start until the end
    long peakMemory = 0;         ///< KiB that were resident at the most
};

/// Runs a child with the input as its standard input and a pipe that is drained as its standard
/// output; standard error goes nowhere.
/// @param body  what the child does; it may call exec.
/// @throws std::runtime_error unless the child ends with status 0; std::system_error when it could
///         not be started.
Sample measure(const std::string &name, const std::function<void()> &body, const Input &input,
               Feed feed = Feed::file);

/// Starts `count` children, at most `atOnce` of them at any time, without input and output.
/// @return the seconds until the last has ended.
/// @throws as measure() does
double measureMany(const std::string &name, const std::function<void()> &body, int count,
                   int atOnce);

/// Something that copies standard input to standard output.
struct Candidate {
    std::string name;
    std::function<void()> body;
    std::vector<Sample> samples = {};

    /// The middle one of the samples' values.
    double median(double Sample::*value) const;
    /// KiB, the most of all samples.
    long peakMemory() const;
};

/// A candidate that is another program.
/// @param environment  "NAME=VALUE", in place of what the benchmark was given.
Candidate program(std::string name, std::vector<std::string> arguments,
                  std::vector<std::string> environment = {});

/// Measures the candidates in turns, so that a busy machine disturbs all of them alike, and prints
/// a table in Markdown: of each the median processor time and elapsed time, their ratios to those
/// of the first, and the peak memory.
void compare(const std::string &title, const Input &input, std::vector<Candidate> candidates,
             int rounds, Feed feed = Feed::file);
