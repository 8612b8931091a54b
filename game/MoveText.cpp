// Moves of the tree as text: SAN resolved on the tree's positions, nodes written as SAN.
#include "game/MoveText.h"

#include "game/MoveTree.h"
#include "game/Position.h"

namespace velmora {

namespace {

template <typename Ch>
Position* ReadSanText(Position* position, const Ch* text, SanStatus* status) {
    SanResolution found = ReadSanMove(position->Value(), text);
    if (status) *status = found.status;
    if (!found.Found()) return nullptr;
    const Move& move = found.move;
    if (Position* known = position->FindContinuation(move.from, move.to, move.promotion)) {
        return known;
    }
    return position->AddMove(move, nullptr, nullptr);
}

}  // namespace

Position* ReadSan(Position* position, const char16_t* text, SanStatus* status) {
    return ReadSanText(position, text, status);
}

Position* ReadSan(Position* position, const char* text, SanStatus* status) {
    return ReadSanText(position, text, status);
}

int WriteSan(const MoveNode* node, char16_t* buffer, SanStyle style) {
    return velmora::WriteSan(node->positionBefore->Value(),
                             Move{node->from, node->to, node->promotion}, node->nag, style, buffer);
}

int WriteCoordinates(const MoveNode* node, char16_t* buffer) {
    return velmora::WriteCoordinates(Move{node->from, node->to, node->promotion}, buffer);
}

}  // namespace velmora
