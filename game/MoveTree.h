// MoveNode: one move of a game's tree, with its variations and the position it produces.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/ChessTypes.h"

namespace velmora {

class Position;

// Positions and nodes alternate: a position owns its first continuation, a node owns its next
// alternative (the next variation from the same position) and the position after its move.
// The first node of every list is the main line at that point; the others are variations in
// the order they were added. Invariants kept by every operation here:
//   node->positionAfter->ArrivalNode() == node;
//   node->positionBefore->FirstContinuation() is the first node of node's list;
//   only the first node of a list has no previous alternative;
//   the first node of a list has the level of the line holding its position before (0 on the
//   main line), every other node of the list that level + 1.
class MoveNode {
  public:
    // Creates a node for from -> to between two positions; links are left null.
    MoveNode(Position* before, Position* after, Square from, Square to, std::uint8_t number);
    MoveNode(const MoveNode&) = delete;
    MoveNode& operator=(const MoveNode&) = delete;
    // Destroys the position after this move and every later alternative, with all that
    // follows them. Long games are torn down without deep recursion.
    virtual ~MoveNode();
    // One node a move, like positions: blocks are recycled.
    static void* operator new(std::size_t size);
    static void operator delete(void* block, std::size_t size);

    void RecordCapture(PieceCode code, Square enPassantSquare);
    // Returns false when the move captured nothing, else true with the captured code and the
    // en-passant target square (0 for an ordinary capture).
    bool GetCapture(PieceCode* code, Square* square) const;

    // For the first node of a list its next alternative, for any other node null.
    MoveNode* FirstVariation() const;
    // The next alternative, but only for a node that is itself an alternative.
    MoveNode* NextVariation() const;
    bool IsVariation() const { return previousAlternative != nullptr; }
    MoveNode* LastAlternative();
    // Links node at the end of this node's list with level lineLevel + 1.
    void AppendAlternative(MoveNode* node, int lineLevel);
    // Puts this node in old's place in its list; old loses its links. Returns true when old
    // was the first of the list, so the caller must make this node the first continuation.
    // The caller then destroys old with everything after it.
    bool ReplaceNode(MoveNode* old);
    // Detaches this node for "Delete move": an alternative leaves its list alone; a first
    // node takes all its alternatives with it. The caller then destroys this node.
    void UnlinkNode();
    // Makes the variation holding this node the main line at its branch point and re-levels
    // the list. On the game's main line nothing changes.
    void PromoteLine();
    // Gives this node the level, its continuations the same, and its later alternatives
    // level + 1 (their own continuations their level).
    void Relevel(int newLevel);
    // The main-line move from which the variation holding this node branches; null when the
    // node is on the game's main line.
    MoveNode* VariationStart();
    // The node printed just before this one when each move is followed by its variations and
    // then its continuation; null for the first move of the game.
    MoveNode* PreviousInNotation();

    Square from;
    Square to;
    std::uint8_t moveNumber;
    bool captures = false;
    PieceCode capturedCode = 0;
    Square enPassantSquare = 0;
    std::uint8_t castlingKind = 0;  // 0 none, 1 king-side, 2 queen-side
    std::uint8_t level = 0;
    std::uint8_t promotion = 0;  // piece type 2..5, or 0
    bool givesCheck = false;
    std::uint8_t nag = 0;
    MoveNode* nextAlternative = nullptr;      // owned
    MoveNode* previousAlternative = nullptr;  // not owned
    Position* positionBefore;                 // not owned
    Position* positionAfter;                  // owned

  private:
    friend class Position;
    friend void DestroyLine(MoveNode* node);
    // Makes node the first continuation of position (ownership moves to position).
    static void SetFirstContinuation(Position* position, MoveNode* node);
};

// Destroys a line (a node with its alternatives and all that follows them) iteratively.
void DestroyLine(MoveNode* node);

}  // namespace velmora
