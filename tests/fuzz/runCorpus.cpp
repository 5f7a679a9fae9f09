// The main of a fuzz target in a build without libFuzzer: runs files, and all files of folders, once.

#include "fuzz/FuzzInput.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int*, char***)
{
    return 0;
}

int main(int argc, char** argv)
{
    namespace fs = std::filesystem;
    LLVMFuzzerInitialize(&argc, &argv);
    std::vector<fs::path> files;
    for (int i = 1; i < argc; ++i) {
        if (!fs::is_directory(argv[i]))
            files.emplace_back(argv[i]);
        else
            for (const auto& entry : fs::directory_iterator(argv[i]))
                files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    for (const fs::path& path : files) {
        std::ifstream file(path, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        if (!file) {
            std::fprintf(stderr, "%s can't be read\n", path.c_str());
            return 1;
        }
        std::printf("%s\n", path.c_str());
        std::fflush(stdout);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("%zu inputs\n", files.size());
    return files.empty() ? 1 : 0;
}
