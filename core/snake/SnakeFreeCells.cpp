#include "core/snake/SnakeFreeCells.h"

#include <algorithm>
#include <bit>
#include <cassert>

namespace FellowCore {

namespace {

constexpr int bitsPerWord = 64;

std::size_t asIndex(int value) {
    return static_cast<std::size_t>(value);
}

std::uint64_t bitOf(SnakeCell cell) {
    return std::uint64_t{1} << (cell.x % bitsPerWord);
}

/// The position of the set bit that has `below` set bits under it.
int setBit(std::uint64_t word, int below) {
    for (; below > 0; --below) {
        word &= word - 1;
    }
    return std::countr_zero(word);
}

} // namespace

SnakeFreeCells::SnakeFreeCells(int columns, int rows)
    : columns_(std::max(columns, 1)), rows_(std::max(rows, 1)), size_(columns_ * rows_),
      wordsPerRow_((columns_ + bitsPerWord - 1) / bitsPerWord),
      words_(asIndex(wordsPerRow_) * asIndex(rows_), ~std::uint64_t{0}), counts_(asIndex(rows_) + 1, 0) {
    for (int row = 1; row <= rows_; ++row) {
        counts_[asIndex(row)] = (row & -row) * columns_;
    }
}

SnakeCell SnakeFreeCells::operator[](int index) const {
    assert(index >= 0 && index < size_);
    int y = 0;
    for (int span = static_cast<int>(std::bit_floor(asIndex(rows_))); span > 0; span /= 2) {
        if (y + span <= rows_ && counts_[asIndex(y + span)] <= index) {
            y += span;
            index -= counts_[asIndex(y)];
        }
    }
    for (int x = 0;; x += bitsPerWord) {
        const std::uint64_t word = words_[wordAt({x, y})];
        const int inWord = std::popcount(word);
        if (index < inWord) {
            return {x + setBit(word, index), y};
        }
        index -= inWord;
    }
}

bool SnakeFreeCells::contains(SnakeCell cell) const {
    return isOnBoard(cell) && (words_[wordAt(cell)] & bitOf(cell)) != 0;
}

bool SnakeFreeCells::isOnBoard(SnakeCell cell) const {
    return cell.x >= 0 && cell.x < columns_ && cell.y >= 0 && cell.y < rows_;
}

void SnakeFreeCells::take(SnakeCell cell) {
    if (contains(cell)) {
        flip(cell, -1);
    }
}

void SnakeFreeCells::release(SnakeCell cell) {
    if (isOnBoard(cell) && !contains(cell)) {
        flip(cell, 1);
    }
}

std::size_t SnakeFreeCells::wordAt(SnakeCell cell) const {
    return asIndex(cell.y) * asIndex(wordsPerRow_) + asIndex(cell.x / bitsPerWord);
}

void SnakeFreeCells::flip(SnakeCell cell, int change) {
    words_[wordAt(cell)] ^= bitOf(cell);
    size_ += change;
    for (int row = cell.y + 1; row <= rows_; row += row & -row) {
        counts_[asIndex(row)] += change;
    }
}

} // namespace FellowCore
