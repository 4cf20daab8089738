#include "fuzz/decoder_properties.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int kInputCount = 20000;
constexpr unsigned kSeed = 19460;

struct Target
{
    const char* name; // also that of its folder in the corpus
    bool (*holds)(std::span<const std::uint8_t>);
};

Bytes contentOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string hexOf(const Bytes& bytes)
{
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += "0123456789ABCDEF"[byte >> 4];
        text += "0123456789ABCDEF"[byte & 0x0F];
    }
    return text;
}

// Seeded, and free of the library's distributions: the same inputs on every machine.
class Mutator
{
public:
    Bytes random()
    {
        Bytes bytes(below(below(16) == 0 ? 1441 : 64));
        std::ranges::generate(bytes, [this] { return byte(); });
        return bytes;
    }

    Bytes mutated(Bytes bytes)
    {
        for (std::size_t i = below(4) + 1; i > 0; --i)
            mutateOnce(bytes);
        return bytes;
    }

    std::size_t below(std::size_t limit) { return mEngine() % limit; }

private:
    std::uint8_t byte() { return static_cast<std::uint8_t>(mEngine() & 0xFF); }

    void mutateOnce(Bytes& bytes)
    {
        const std::size_t at = below(bytes.size() + 1);
        const auto position = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        switch (below(4)) {
        case 0:
            bytes.resize(at);
            break;
        case 1:
            bytes.insert(position, below(16), byte());
            break;
        case 2:
            bytes.insert(bytes.end(), bytes.size() < 2000 ? at : 0, byte());
            break;
        default:
            if (position != bytes.end())
                *position = below(2) ? byte() : std::uint8_t{0xFF};
        }
    }

    std::mt19937 mEngine{kSeed};
};

class HostileInput : public testing::TestWithParam<Target>
{
protected:
    static std::vector<Bytes> corpus()
    {
        const std::filesystem::path folder(TARVIO_CORPUS_FOLDER);
        std::vector<std::filesystem::path> files;
        for (const auto& entry : std::filesystem::directory_iterator(folder / GetParam().name))
            files.push_back(entry.path());
        std::ranges::sort(files);
        std::vector<Bytes> inputs;
        std::ranges::transform(files, std::back_inserter(inputs), contentOf);
        return inputs;
    }
};

TEST_P(HostileInput, ofTheCorpusIsWithstood)
{
    const auto inputs = corpus();
    ASSERT_GT(inputs.size(), 4U);
    for (const Bytes& input : inputs)
        EXPECT_TRUE(GetParam().holds(input)) << hexOf(input);
}

TEST_P(HostileInput, cutOutOfTheCorpusIsWithstood)
{
    for (const Bytes& input : corpus()) {
        for (std::size_t length = 0; length < input.size(); ++length) {
            const Bytes cut(input.begin(), input.begin() + static_cast<std::ptrdiff_t>(length));
            ASSERT_TRUE(GetParam().holds(cut)) << hexOf(cut);
        }
    }
}

TEST_P(HostileInput, atRandomIsWithstood)
{
    Mutator mutator;
    for (int i = 0; i < kInputCount; ++i) {
        const Bytes input = mutator.random();
        ASSERT_TRUE(GetParam().holds(input)) << hexOf(input);
    }
}

TEST_P(HostileInput, mutatedFromTheCorpusIsWithstood)
{
    Mutator mutator;
    const auto inputs = corpus();
    for (int i = 0; i < kInputCount; ++i) {
        const Bytes input = mutator.mutated(inputs[mutator.below(inputs.size())]);
        ASSERT_TRUE(GetParam().holds(input)) << hexOf(input);
    }
}

INSTANTIATE_TEST_SUITE_P(Decoder, HostileInput,
                         testing::Values(Target{"measurement", measurementDecoderHolds},
                                         Target{"freespace", freespaceDecoderHolds},
                                         Target{"control_reply", controlReplyDecoderHolds},
                                         Target{"control_request", controlRequestDecoderHolds}),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
