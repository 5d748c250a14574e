// The floor of the workbook load comparison: brings a file into memory the cheapest way (mapped,
// as Load maps it) and touches every byte once, which no loader of the same file can beat. The
// bytes are summed eight at a time: a sum of single bytes spends more time adding than reading.
// A standalone program: it does not load the library.
//
//   xls_floor FILE
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: xls_floor FILE\n");
        return 2;
    }
    const int fd = ::open(argv[1], O_RDONLY);
    struct stat st;
    if (fd < 0 || ::fstat(fd, &st) != 0 || st.st_size <= 0) return 1;
    const auto size = static_cast<std::size_t>(st.st_size);
    void* view = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, fd, 0);
    ::close(fd);
    if (view == MAP_FAILED) return 1;
    const auto* bytes = static_cast<const std::uint8_t*>(view);
    std::uint64_t sum = 0;
    std::size_t i = 0;
    for (; i + 8 <= size; i += 8) {
        std::uint64_t word;
        std::memcpy(&word, bytes + i, sizeof word);
        sum += word;
    }
    for (; i < size; ++i) sum += bytes[i];
    std::printf("%zu bytes, sum %llu\n", size, static_cast<unsigned long long>(sum));
    return ::munmap(view, size) == 0 ? 0 : 1;
}
