// Helpers the engine tests share: boards from FEN.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "engine/search/Board.h"

namespace velmora::engine::testing {

inline Board BoardOf(const std::string& fen) {
    Board board;
    EXPECT_TRUE(board.SetFromFen(fen)) << fen;
    return board;
}

}  // namespace velmora::engine::testing
