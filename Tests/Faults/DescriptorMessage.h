#pragma once

#include <array>
#include <sys/socket.h>
#include <sys/uio.h>

/// A message of one byte with room for one descriptor beside it, for sendmsg(2) and recvmsg(2).
struct DescriptorMessage {
    char byte = 0;
    iovec data = {&byte, 1};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control = {};
    msghdr message = {};

    DescriptorMessage()
    {
        message.msg_iov = &data;
        message.msg_iovlen = 1;
        message.msg_control = control.data();
        message.msg_controllen = control.size();
    }
    DescriptorMessage(const DescriptorMessage &) = delete; // it points into itself
    DescriptorMessage &operator=(const DescriptorMessage &) = delete;
};
