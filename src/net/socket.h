// A socket's descriptor, and the waits that the data routes and the broadcast classes share.
#pragma once

struct SSocket
{
    int descriptor;  // -1: closed
};

// Waits 10 ms for something to read, whatever the second argument says. 1: there is something, or the end of
// the connection; 0: nothing; -1: no such descriptor.
int SocketWaitReadable(int socket, unsigned int milliseconds);
// 1: room to write, or a broken connection, which the write will tell; 0: none within the wait; -1: no such
// descriptor.
int SocketWaitWritable(int socket, unsigned int milliseconds);
// 2: connected and there is room; 1: neither room nor a fault within the wait; 0: broken.
int SocketCheckWritable(int socket, unsigned int milliseconds);
// Ends the connection in order, closes the descriptor, frees the record and clears the caller's pointer.
void SocketClose(SSocket*& socket);
// Keeps a descriptor out of the programs that the application starts.
void SocketKeepFromChildren(int socket);
