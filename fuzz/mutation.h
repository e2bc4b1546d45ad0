// What the mutators share: choices at random, numbers at the borders of what is read, and pieces of an input to move
// about.
//
// An input is a sequence of pieces: the lines of a GSD file, the records of a type file. A mutator changes one piece or
// the sequence; every so often the bytes are left to the fuzzer's own mutations, which know the dictionary and what the
// program compares.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

class Random {
public:
    explicit Random(unsigned seed) : engine(seed) {}

    /// 0 to limit - 1; 0 for a limit of 0.
    std::size_t below(std::size_t limit) { return limit == 0 ? 0 : engine() % limit; }
    bool oneIn(std::size_t count) { return below(count) == 0; }
    template <class Container>
    auto& of(Container& values)
    {
        return values[below(std::size(values))];
    }

private:
    std::minstd_rand engine;
};

/// Limits of the formats and of the types that hold their numbers, and the neighbours of both.
inline constexpr std::array<unsigned, 48> kBorderNumbers{
    0,   1,   2,   3,   4,   5,    6,    7,    8,    9,     10,    15,    16,    17,    31,    32,
    33,  61,  62,  63,  64,  99,   100,  127,  128,  236,   237,   238,   243,   244,   245,   254,
    255, 256, 488, 489, 999, 1000, 1023, 1024, 9999, 10000, 32767, 32768, 65535, 65536, 99999, 4294967295};

/// Digits of a border number, cut or padded to a width.
std::string borderDigits(Random& random, std::size_t width);

/// Other digits in the place of a number: a neighbour of it, or a border number of the same width.
std::string otherDigits(Random& random, const std::string& digits);

/// A text made from a pattern: what `part` gives for a character stands in its place, "" for the character itself.
std::string filled(std::string_view pattern, Random& random, std::string (*part)(char sign, Random& random));

using Pieces = std::vector<std::string>;

/// Repeats, drops, swaps or moves pieces.
void rearrange(Pieces& pieces, Random& random);

/// Changes an input in place, once or a few times; the pieces end behind each end mark. Every other time the fuzzer's
/// own mutations change it. Returns its new size.
std::size_t mutateInput(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned seed,
                        std::string_view endMark, void (*mutate)(Pieces& pieces, Random& random));

/// Writes the pieces into a buffer of the fuzzer, as many bytes as it takes.
std::size_t store(const Pieces& pieces, std::uint8_t* data, std::size_t maxSize);

/// Of libFuzzer: its own mutations.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);
