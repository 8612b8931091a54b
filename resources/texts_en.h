// English texts of the menus, dialogs and string table laid out in Velmora.rc.inc.
// Only #define lines: the resource compiler reads this file (UTF-8).
#ifndef VELMORA_TEXTS_H
#define VELMORA_TEXTS_H

// Main menu (102)
#define TXT_MENU "Menu"
#define TXT_NEW "New"
#define TXT_NEW_GAME "Game"
#define TXT_NEW_POSITION "Position"
#define TXT_NEW_SEARCH "Search"
#define TXT_TOOLS "Tools"
#define TXT_IMPORT_STAR_DIAMOND "Import Star Diamond Game..."
#define TXT_OPTIONS_DOTS "Options..."
#define TXT_ABOUT_DOTS "About..."
#define TXT_EXIT "Exit"

// Game window menu bar (7316)
#define TXT_GAME "Game"
#define TXT_GAME_NEW_GAME "New Game"
#define TXT_GAME_NEW_POSITION "New Position..."
#define TXT_OPEN_NEXT "Open Next"
#define TXT_REOPEN_FILE "Reopen File"
#define TXT_SAVE "Save"
#define TXT_SAVE_AS "Save as..."
#define TXT_CLOSE "Close"
#define TXT_MOVES "Moves"
#define TXT_FIRST_MOVE "First move"
#define TXT_LAST_MOVE "Last move"
#define TXT_PROMOTE "Promote"
#define TXT_DELETE_MOVE "Delete move"
#define TXT_MATERIAL_BALANCE "Material Balance"
#define TXT_POSITION "Position"
#define TXT_EVAL_NONE "(none)"
#define TXT_ENGINE "Engine"
#define TXT_ENGINE_START "Start..."
#define TXT_CONNECT_UCB "Connect UCB"
#define TXT_LARGE_CLOCKS "Large clocks"
#define TXT_OPTIONS "Options"

// Annotation popup (106)
#define TXT_NAG_NONE "(none)"

// Comment editor popup (111)
#define TXT_COMMENT "Comment"
#define TXT_COMMENT_RESET "Reset"
#define TXT_COMMENT_CLEAR "Clear"
#define TXT_COMMENT_CLOSE "Close"

// Game list dialog (104)
#define TXT_SHOW_RESULT "Result"
#define TXT_SHOW_DATE "Date"
#define TXT_SHOW_EVENT "Event"
#define TXT_SHOW_ECO "ECO"
#define TXT_SHOW_ROUND "Round"
#define TXT_SHOW_START "Start"

// Small dialogs of the game window (102, 105, 108)
#define TXT_PROMOTION_TITLE "Promotion in"
#define TXT_QUEEN "Queen"
#define TXT_ROOK "Rook"
#define TXT_KNIGHT "Knight"
#define TXT_BISHOP "Bishop"
#define TXT_CHOOSE_MOVE_TITLE "Choose move"
#define TXT_MOVES_LABEL "Moves :"
#define TXT_OK "OK"
#define TXT_CANCEL "Cancel"
#define TXT_NEW_LINE_TITLE "New line"
#define TXT_OTHER_MOVES "Other moves"
#define TXT_ADD "Add"
#define TXT_REPLACE "Replace"

// "Start game" (113)
#define TXT_START_GAME_TITLE "Start game"
#define TXT_START_ENGINE "Engine :"
#define TXT_START_PLAY "Play"
#define TXT_START_ANALYZE "Analyze"
#define TXT_ENGINE_PLAYS_BLACK "Engine plays Black"
#define TXT_START_BUTTON "Start"

// "Select serial port" (147) and the Star Diamond import (148)
#define TXT_SELECT_PORT_TITLE "Select serial port"
#define TXT_PORT "Port :"
#define TXT_PORT_HINT "Pick the port the chessboard is on, or type its number."
#define TXT_STAR_DIAMOND_TITLE "Import Star Diamond Game"
#define TXT_CONNECT "Connect"
#define TXT_IMPORT "Import"
#define TXT_STAR_DIAMOND_MESSAGES "Messages from Star Diamond"

// About dialog (103, 149)
#define TXT_ABOUT_TITLE "About Velmora"
#define TXT_ABOUT_NAME "Velmora 2.0"
#define TXT_ABOUT_VERSION "Version 2.0 for Pocket PC and Windows"
#define TXT_ABOUT_CREDITS                                                                       \
    "Velmora shows, edits and saves chess games kept in PGN files and searches them. It plays " \
    "and analyses with engine plug-ins, keeps a chess clock, and talks to UCB and Star "        \
    "Diamond electronic chessboards.\n\nMade by Trelvik."

// Comment editor (107) and material balance (109)
#define TXT_COMMENT_TITLE "Comment"
#define TXT_MATERIAL_TITLE "Material Balance"
#define TXT_STILL_ON_BOARD "Still on board"
#define TXT_TAKEN "Taken"

// Board editor (112, 151)
#define TXT_SETUP_TITLE "Setup board"
#define TXT_SETUP_CLEAR "Clear"
#define TXT_SETUP_COPY "Copy board"
#define TXT_CASTLE_WHITE_KING "Wh. O-O OK"
#define TXT_CASTLE_WHITE_QUEEN "Wh. O-O-O OK"
#define TXT_CASTLE_BLACK_KING "Bl. O-O OK"
#define TXT_CASTLE_BLACK_QUEEN "Bl. O-O-O OK"
#define TXT_WHITE_TO_PLAY "White to play"
#define TXT_BLACK_TO_PLAY "Black to play"
#define TXT_MOVE_NUMBER "Move # :"

// Game headers (138, 150) and tags (140)
#define TXT_HEADERS_TITLE "Game headers"
#define TXT_LABEL_WHITE "&White :"
#define TXT_LABEL_BLACK "&Black :"
#define TXT_LABEL_SITE "&Site :"
#define TXT_LABEL_EVENT "&Event :"
#define TXT_LABEL_ROUND "&Round :"
#define TXT_LABEL_DATE "&Date :"
#define TXT_LABEL_RESULT "Result :"
#define TXT_RESULT_WHITE_WINS "&1-0"
#define TXT_RESULT_DRAW "1/&2-1/2"
#define TXT_RESULT_BLACK_WINS "&0-1"
#define TXT_RESULT_LINE "L&ine"
#define TXT_HEADER_MORE "&More..."
#define TXT_TAGS_TITLE "Tags"
#define TXT_TAG_NAME "Tag :"
#define TXT_TAG_VALUE "Value :"
#define TXT_TAG_SET "Set"
#define TXT_TAG_DELETE "Del"

// Save target (145)
#define TXT_SAVE_TARGET_TITLE "Save game"
#define TXT_TARGET_NEW_FILE "Create new file"
#define TXT_TARGET_RECENT "Append to <file0>"
#define TXT_TARGET_OTHER_FILE "Append to another file"

// Game search (146, 152) and the material it looks for (153)
#define TXT_SEARCH_TITLE "Game search"
#define TXT_SEARCH_WHITE "&White :"
#define TXT_SEARCH_BLACK "&Black :"
#define TXT_IGNORE_COLORS "&Ignore colors"
#define TXT_SEARCH_RESULT "&Result"
#define TXT_SEARCH_ECO "&Eco :"
#define TXT_SEARCH_POSITION "Position"
#define TXT_SEARCH_MATERIAL "Material"
#define TXT_SEARCH_RUN "Search"
#define TXT_WANTED_TITLE "Material"
#define TXT_WANTED_WHITE "White"
#define TXT_WANTED_BLACK "Black"
#define TXT_WANTED_PAWNS "Pawns :"
#define TXT_WANTED_ROOKS "Rooks :"
#define TXT_WANTED_KNIGHTS "Knights :"
#define TXT_WANTED_BISHOPS "Bishops :"
#define TXT_WANTED_QUEENS "Queens :"

// Options (142, 143, 144)
#define TXT_OPTIONS_DISPLAY "Display"
#define TXT_OPTIONS_LAYOUT "Layout :"
#define TXT_OPTIONS_PIECES "Pieces :"
#define TXT_OPTIONS_ARROW "Indicate last move with arrow"
#define TXT_OPTIONS_COMMENTS "Indicate comments with [...]"
#define TXT_OPTIONS_STARTUP "Startup"
#define TXT_OPTIONS_AT_STARTUP "At startup :"
#define TXT_OPTIONS_DATABASES "Display databases list"
#define TXT_OPTIONS_NEW_GAME "Create new game"
#define TXT_OPTIONS_CHECK_ASSOC "Check .PGN Association"
#define TXT_OPTIONS_COLORS "Colors"
#define TXT_OPTIONS_WHITE_SQUARES "White squares :"
#define TXT_OPTIONS_BLACK_SQUARES "Black squares :"
#define TXT_OPTIONS_SELECTION "Selection :"
#define TXT_OPTIONS_RESTORE "Restore"

// String table
#define TXT_S_CAPTION "Velmora 2.0"
#define TXT_S_CANNOT_OPEN_FILE "Unable to open file"
#define TXT_S_CANNOT_CREATE_TOOLBAR "Unable to create toolbar buttons"
#define TXT_S_ASK_DEFAULT_VIEWER                                                                   \
    "Velmora is currently not the default PGN viewer ; do you want to register it as the default " \
    "PGN viewer ?"
#define TXT_S_CANNOT_CREATE_MAIN_WINDOW "Unable to create the main window"
#define TXT_S_CANNOT_CREATE_CUSTOM_MENU "Unable to create custom menu"
#define TXT_S_CANNOT_LOAD_ENGINE "Unable to load engine"
#define TXT_S_ENGINE_NOT_VALID "Engine is not valid for Velmora"
#define TXT_S_CANNOT_INIT_ENGINE "Unable to initialize engine"
#define TXT_S_ENGINE_ALREADY_LOADED \
    "An engine has already been loaded. Please quit and restart Velmora to load another engine."
#define TXT_S_ENGINE_STOPPED "The Engine has unexpectedly stopped. Please restart Velmora"
#define TXT_S_ENGINE_VERSION "The engine's version is not compatible with this version of Velmora"
#define TXT_S_MENU_BUTTON "Menu"
#define TXT_S_FOLDER_LABEL "Folder:"
#define TXT_S_ALL_FOLDERS "All Folders"
#define TXT_S_PGN_FILES "PGN files"
#define TXT_S_ALL_FILES "All files"
#define TXT_S_GAME_BUTTON "Game"
#define TXT_S_MOVES_BUTTON "Moves"
#define TXT_S_TOOLS_BUTTON "Tools"
#define TXT_S_CHOOSE_FOLDER "Choose a folder"
#define TXT_S_PORTRAIT "Portrait"
#define TXT_S_LANDSCAPE "Landscape"

#endif
