// The floor of the workbook load comparison: reads a file into memory with one read and touches
// every byte once (sums them), which no loader of the same file can beat.
//
//   xls_floor FILE
#include <cstdio>
#include <cstdint>
#include <memory>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: xls_floor FILE\n");
        return 2;
    }
    std::FILE* file = std::fopen(argv[1], "rb");
    if (!file) return 1;
    std::fseek(file, 0, SEEK_END);
    const long length = std::ftell(file);
    std::fseek(file, 0, SEEK_SET);
    if (length < 0) return 1;
    const auto size = static_cast<std::size_t>(length);
    const std::unique_ptr<unsigned char[]> bytes(new unsigned char[size]);  // not zeroed: read once
    const std::size_t got = std::fread(bytes.get(), 1, size, file);
    std::fclose(file);
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < got; ++i) sum += bytes[i];
    std::printf("%zu bytes, sum %llu\n", got, static_cast<unsigned long long>(sum));
    return got == size ? 0 : 1;
}
