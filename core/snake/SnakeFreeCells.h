#pragma once

#include "core/snake/SnakeCell.h"

#include <cstdint>
#include <vector>

namespace FellowCore {

/// The cells of a board that the snake leaves free, as a list in a fixed order: row by row from the bottom,
/// left to right within a row.
///
/// The list is never written out. One bit for each cell and a binary indexed tree of the rows' counts (P. M.
/// Fenwick, "A new data structure for cumulative frequency tables", 1994) give any entry, and take a cell out
/// or back in, in time that grows with the width of a row and the logarithm of the rows.
class SnakeFreeCells {
public:
    /// Everything is free. Both sides are at least 1.
    SnakeFreeCells(int columns, int rows);

    int columns() const { return columns_; }
    int rows() const { return rows_; }
    int size() const { return size_; }
    /// The entry at `index`, which is 0...size() - 1.
    SnakeCell operator[](int index) const;
    /// False also for a cell outside the board.
    bool contains(SnakeCell cell) const;
    bool isOnBoard(SnakeCell cell) const;

    /// Takes a cell out of the list or puts it back; nothing happens when it is so already.
    void take(SnakeCell cell);
    void release(SnakeCell cell);

    friend bool operator==(const SnakeFreeCells&, const SnakeFreeCells&) = default;

private:
    std::size_t wordAt(SnakeCell cell) const;
    void flip(SnakeCell cell, int change);

    int columns_;
    int rows_;
    int size_;
    int wordsPerRow_;
    /// A set bit is a free cell. Each row begins a new word; the bits beyond its end are never reached.
    std::vector<std::uint64_t> words_;
    /// The tree: entry i holds the free cells of the i & -i rows below i.
    std::vector<int> counts_;
};

} // namespace FellowCore
