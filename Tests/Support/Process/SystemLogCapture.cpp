#include "SystemLogCapture.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <utility>

namespace {

Support::SystemLogCapture *current = nullptr;

void keepFormatted(int priority, const char *format, va_list arguments)
{
    std::array<char, 8192> text = {};
    std::vsnprintf(text.data(), text.size(), format, arguments);
    Support::SystemLogCapture::keep({priority, text.data()});
}

} // namespace

// Stand in for the C library's: an executable's own definition goes before a shared library's. The
// second name is what the first becomes in a build with _FORTIFY_SOURCE.

extern "C" __attribute__((format(printf, 2, 3))) void syslog(int priority, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    keepFormatted(priority, format, arguments);
    va_end(arguments);
}

extern "C" __attribute__((format(printf, 3, 4))) void __syslog_chk(int priority, int,
                                                                   const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    keepFormatted(priority, format, arguments);
    va_end(arguments);
}

namespace Support {

SystemLogCapture::SystemLogCapture()
{
    current = this;
}

SystemLogCapture::~SystemLogCapture()
{
    current = nullptr;
}

std::vector<std::string> SystemLogCapture::texts() const
{
    std::vector<std::string> texts;
    for (const Message &message : _messages)
        texts.push_back(message.text);
    return texts;
}

void SystemLogCapture::keep(Message message)
{
    if (current != nullptr)
        current->_messages.push_back(std::move(message));
}

} // namespace Support
