// Runs a fuzzer's function over the files of the folders named on the command line, so that every
// input that once mattered is also tried by builds without libFuzzer.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> files_below(int folder_count, char** folders) {
    std::vector<std::filesystem::path> files;
    for (int i = 0; i < folder_count; ++i) {
        std::error_code error;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folders[i], error)) {
            if (entry.is_regular_file()) {
                files.push_back(entry.path());
            }
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

bool run(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> bytes(std::istreambuf_iterator<char>(stream), {});
    if (stream.bad()) {
        std::fprintf(stderr, "cannot read %s\n", file.c_str());
        return false;
    }
    // Named before the run: the last name printed is the input that crashed.
    std::printf("%s (%zu bytes)\n", file.c_str(), bytes.size());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    const auto files = files_below(argc - 1, argv + 1);
    for (const auto& file : files) {
        if (!run(file)) {
            return 1;
        }
    }
    if (files.empty()) {
        std::fprintf(stderr, "no inputs found\n");
        return 1;
    }
    std::printf("%zu inputs\n", files.size());
    return 0;
}
