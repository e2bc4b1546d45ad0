#include "fuzz/mutation.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr std::size_t kMostPiecesAtOnce = 12;

std::ptrdiff_t place(std::size_t index)
{
    return static_cast<std::ptrdiff_t>(index);
}

/// The number of pieces to take from `first` on: mostly one.
std::size_t runLength(const Pieces& pieces, std::size_t first, Random& random)
{
    const std::size_t wanted = random.oneIn(2) ? 1 : 1 + random.below(kMostPiecesAtOnce);
    return std::min(wanted, pieces.size() - first);
}

/// The last digits, or zeros before them.
std::string withWidth(std::string digits, std::size_t width)
{
    if (digits.size() < width)
        digits.insert(0, width - digits.size(), '0');
    return digits.substr(digits.size() - width);
}

/// Takes an input apart behind each end mark.
Pieces piecesOf(std::string_view input, std::string_view endMark)
{
    Pieces pieces;
    while (!input.empty()) {
        const std::size_t end = input.find(endMark);
        const std::size_t length = end == std::string_view::npos ? input.size() : end + endMark.size();
        pieces.emplace_back(input.substr(0, length));
        input.remove_prefix(length);
    }
    return pieces;
}

} // namespace

std::string borderDigits(Random& random, std::size_t width)
{
    return withWidth(std::to_string(random.of(kBorderNumbers)), width);
}

std::string otherDigits(Random& random, const std::string& digits)
{
    constexpr std::array<int, 4> kSteps{-2, -1, 1, 2};
    constexpr std::size_t kMostDigits = 9;
    if (digits.size() > kMostDigits || random.oneIn(2))
        return borderDigits(random, digits.size());
    const long neighbour = std::stol(digits) + random.of(kSteps);
    return withWidth(std::to_string(std::max(neighbour, 0L)), digits.size());
}

std::string filled(std::string_view pattern, Random& random, std::string (*part)(char sign, Random& random))
{
    std::string text;
    for (const char sign : pattern) {
        const std::string replacement = part(sign, random);
        text += replacement.empty() ? std::string(1, sign) : replacement;
    }
    return text;
}

void rearrange(Pieces& pieces, Random& random)
{
    if (pieces.empty())
        return;
    const std::size_t first = random.below(pieces.size());
    const std::size_t count = runLength(pieces, first, random);
    const Pieces run(pieces.begin() + place(first), pieces.begin() + place(first + count));
    switch (random.below(4)) {
    case 0:
        pieces.erase(pieces.begin() + place(first), pieces.begin() + place(first + count));
        break;
    case 1:
        std::swap(pieces[first], random.of(pieces));
        break;
    case 2:
        pieces.erase(pieces.begin() + place(first), pieces.begin() + place(first + count));
        [[fallthrough]];
    default:
        pieces.insert(pieces.begin() + place(random.below(pieces.size() + 1)), run.begin(), run.end());
    }
}

std::size_t store(const Pieces& pieces, std::uint8_t* data, std::size_t maxSize)
{
    std::size_t size = 0;
    for (const std::string& piece : pieces) {
        const std::size_t length = std::min(piece.size(), maxSize - size);
        std::memcpy(data + size, piece.data(), length);
        size += length;
    }
    return size;
}

std::size_t mutateInput(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned seed,
                        std::string_view endMark, void (*mutate)(Pieces& pieces, Random& random))
{
    Random random(seed);
    if (random.oneIn(2))
        return LLVMFuzzerMutate(data, size, maxSize);
    Pieces pieces = piecesOf({reinterpret_cast<const char*>(data), size}, endMark);
    for (std::size_t count = random.oneIn(2) ? 1 : 1 + random.below(4); count > 0; --count)
        mutate(pieces, random);
    return store(pieces, data, maxSize);
}
