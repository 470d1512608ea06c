// Appends to a file through a mapped part of it that moves along. What was appended is in the file without a
// system call for each piece, and stays there however the process ends; the file is then longer than that, by
// zeros.
#pragma once
#include <cstddef>
#include <cstdint>

// Not synchronised. Has no destructor: whoever opened it closes it, before the descriptor.
class CFileWindow
{
public:
    static constexpr std::size_t kHead = 6;  // of a record: its length, and its ID

    // Appends to the regular file `file`, open for reading and writing, which stays the caller's and is
    // `length` bytes long, by windows of `size` bytes. False, and not open, when the file cannot be mapped or
    // `size` is 0.
    bool Open(int file, uint64_t length, std::size_t size);
    bool IsOpen() const { return m_file >= 0; }
    // All of it or nothing: false when the disk or the process's limit on file sizes has no room.
    bool Append(void const* data, std::size_t size);
    // Room in the mapped part for a record of `size` bytes, to be filled from behind its head on and then
    // committed with nothing appended between. Null, with nothing changed, where it is to be appended in
    // pieces: bulk, or no room.
    unsigned char* Claim(uint64_t size);
    // What was claimed is whole but for its head. The room that it takes is `size` bytes.
    void Commit(unsigned char const (&head)[kHead], std::size_t size);
    // Around the pieces of a record. It begins with zeros in the file until all of it is there: cut short by
    // the process's end, it must not pass for a whole one that ends in zeros.
    void BeginRecord();
    void EndRecord();
    // Cuts the file to what was appended, and puts the descriptor's position behind it.
    void Close();

private:
    bool IsInWindow(std::size_t size) const;
    bool MoveToEnd();
    bool Reserve(uint64_t start, std::size_t size);
    bool ReserveAhead(std::size_t size);
    bool MakeRoom(std::size_t size);
    bool AppendPiece(void const* data, std::size_t size);
    bool AppendMapped(void const* data, std::size_t size);
    bool AppendByWrite(void const* data, std::size_t size);
    void Unmap();

    int m_file = -1;
    uint64_t m_length = 0;   // of what was appended, with what was there before
    std::size_t m_size = 0;  // of the window, in bytes; whole pages
    unsigned char* m_pWindow = nullptr;
    uint64_t m_start = 0;     // of the window in the file
    uint64_t m_reserved = 0;  // where the bytes end that the file has blocks for, as far as the window goes
    std::size_t m_ahead = 0;  // what was reserved last beyond what was needed

    bool m_bInRecord = false;
    uint64_t m_record = 0;  // where it begins
    unsigned char m_head[kHead] = {};
    std::size_t m_held = 0;  // bytes of m_head that are known
};
