// Stands in for libFuzzer, which not every compiler has: runs the target over inputs that are always the
// same.
//
//     NAME_fuzz [-runs=N] [FILE|FOLDER…]
//
// The bytes of each file, and of the files in each folder, then N random inputs (0 where files are named and
// no N); SEED in the environment chooses others.
//
// An input that fails is left in the file NAME_fuzz-failure.
#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
// The sanitizers' own hook; absent without them.
extern "C" void __sanitizer_set_death_callback(void (*callback)()) // NOLINT(bugprone-reserved-identifier)
    __attribute__((weak));

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes currentInput;
std::string failureName;

void keepFailure()
{
    std::ofstream(failureName, std::ios::binary)
        .write(reinterpret_cast<const char *>(currentInput.data()),
            static_cast<std::streamsize>(currentInput.size()));
    std::fprintf(stderr, "input kept in %s\n", failureName.c_str());
}

void keepFailureOfSignal(int)
{
    keepFailure();
    std::_Exit(1);
}

/// What decoders and parsers stumble over.
constexpr std::array<std::string_view, 24> tokens = {
    "\n",
    "\r\n",
    "\t",
    std::string_view("\0", 1),
    "\x1B$B",
    "\x1B(B",
    "\x1B(I",
    "\x1B$(D",
    "\x1B",
    "\xEF\xBB\xBF",
    "\xFF\xFE",
    "\xFE\xFF",
    "\xE3\x81\x82",
    "\xED\xA0\x80",
    "\xF0\x9F\x98\x80",
    "\xC3\xA9",
    "\x82\xA0",
    "\xEE\xE1",
    "\x81",
    "\x8F\xB0\xA1",
    "\x8E\xB1",
    "plain text, long enough for a word",
    "30!",
    "\xFF",
};

class InputMaker {
public:
    explicit InputMaker(unsigned seed)
        : m_random(seed)
    {
    }

    Bytes next()
    {
        const std::size_t size = below(below(16) == 0 ? 4000 : 100);
        const unsigned kind = below(3);
        const Bytes alphabet = kind == 1 ? randomBytes(1 + below(8)) : Bytes();
        Bytes input;
        while (input.size() < size) {
            if (kind == 0)
                input.push_back(randomByte());
            else if (kind == 1)
                input.push_back(alphabet[below(static_cast<unsigned>(alphabet.size()))]);
            else
                appendToken(input);
        }
        return input;
    }

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(m_random() % limit); }
    std::uint8_t randomByte() { return static_cast<std::uint8_t>(below(256)); }

    Bytes randomBytes(std::size_t count)
    {
        Bytes bytes(count);
        std::ranges::generate(bytes, [this] { return randomByte(); });
        return bytes;
    }

    void appendToken(Bytes &input)
    {
        if (below(4) == 0) {
            input.push_back(randomByte());
        } else {
            const std::string_view token = tokens.at(below(tokens.size()));
            input.insert(input.end(), token.begin(), token.end());
        }
    }

    std::mt19937 m_random;
};

void run(Bytes input)
{
    currentInput = std::move(input);
    LLVMFuzzerTestOneInput(currentInput.data(), currentInput.size());
}

void runFile(const std::filesystem::path &name)
{
    std::ifstream file(name, std::ios::binary);
    run(Bytes(std::istreambuf_iterator<char>(file), {}));
}

void runFilesOf(const std::filesystem::path &name)
{
    if (!std::filesystem::is_directory(name)) {
        runFile(name);
        return;
    }
    std::vector<std::filesystem::path> files;
    for (const auto &entry : std::filesystem::directory_iterator(name))
        files.push_back(entry.path());
    std::ranges::sort(files);
    std::ranges::for_each(files, runFile);
}

} // namespace

int main(int argc, char **argv)
{
    failureName = std::string(argv[0]) + "-failure";
    if (__sanitizer_set_death_callback)
        __sanitizer_set_death_callback(keepFailure);
    std::signal(SIGABRT, keepFailureOfSignal);
    std::signal(SIGSEGV, keepFailureOfSignal);

    constexpr std::string_view runsOption = "-runs=";
    long runs = -1;
    bool hasFiles = false;
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]).starts_with(runsOption)) {
            runs = std::strtol(argv[i] + runsOption.size(), nullptr, 10);
        } else {
            runFilesOf(argv[i]);
            hasFiles = true;
        }
    }
    if (runs < 0)
        runs = hasFiles ? 0 : 10000;
    const char *seed = std::getenv("SEED");
    InputMaker inputs(seed ? static_cast<unsigned>(std::strtoul(seed, nullptr, 10)) : 1);
    for (long i = 0; i < runs; ++i)
        run(inputs.next());
    return 0;
}
