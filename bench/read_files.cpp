// quilmark-read-files FILE...: reads each file whole into memory of its own and keeps it
// until the end, as a program that does nothing with its input would. The benchmarks time
// it beside the program's own operations on the same files.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <vector>

int main(int argc, char** argv) {
    std::vector<std::unique_ptr<char[]>> contents;
    contents.reserve(static_cast<size_t>(argc));
    for (int i = 1; i < argc; ++i) {
        const int fd = ::open(argv[i], O_RDONLY);
        struct stat info {};
        if (fd < 0 || ::fstat(fd, &info) != 0) {
            std::fprintf(stderr, "quilmark-read-files: cannot read %s\n", argv[i]);
            return 1;
        }
        const auto size = static_cast<size_t>(info.st_size);
        auto bytes = std::make_unique_for_overwrite<char[]>(size);
        for (size_t done = 0; done < size;) {
            const ssize_t got = ::read(fd, bytes.get() + done, size - done);
            if (got <= 0) {
                break;
            }
            done += static_cast<size_t>(got);
        }
        ::close(fd);
        contents.push_back(std::move(bytes));
    }
    return 0;
}
