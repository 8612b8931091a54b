// The tags dialog's rows: the game's extra tags, set and removed through the game.
#include "models/TagEditor.h"

#include "game/Game.h"

namespace velmora {

bool IsHeaderTagName(const std::u16string& name) {
    static constexpr const char16_t* kWrittenByTheProgram[] = {
        u"Event", u"Site", u"Date",       u"Round",      u"White",        u"Black",    u"Result",
        u"SetUp", u"FEN",  u"WhiteEmail", u"BlackEmail", u"LastMoveDate", u"LastMove", u"Trait"};
    for (const char16_t* known : kWrittenByTheProgram) {
        if (EqualsIgnoringCase(known, name.c_str())) return true;
    }
    return false;
}

TagEditor::TagEditor(Game& game) : game_(game) {
    for (ExtraTag* tag = game.FirstTag(); tag != nullptr; tag = tag->next.get())
        rows_.push_back(tag);
}

int TagEditor::RowOf(const std::u16string& name) const {
    for (int row = 0; row < RowCount(); ++row) {
        if (EqualsIgnoringCase(rows_[row]->name.Get(), name.c_str())) return row;
    }
    return -1;
}

TagEditor::Change TagEditor::Set(const std::u16string& name, const std::u16string& value) {
    if (name.empty()) return Change::NoName;
    // These would be written twice: once by the program, once as an extra tag.
    if (IsHeaderTagName(name)) return Change::HeaderTag;
    const int row = RowOf(name);
    if (row >= 0) {
        rows_[row]->value.Set(value.c_str());
        game_.modified = 1;
        return Change::Replaced;
    }
    rows_.push_back(game_.SetTag(name.c_str(), value.c_str()));
    return Change::Added;
}

TagEditor::Change TagEditor::Remove(const std::u16string& name) {
    if (name.empty()) return Change::NoName;
    const int row = RowOf(name);
    if (row < 0) return Change::NoSuchTag;
    game_.RemoveTag(rows_[row]);
    rows_.erase(rows_.begin() + row);
    return Change::Removed;
}

}  // namespace velmora
