// Resource and control identifiers shared by the .rc files (windres) and the program (C++).
// Only #define lines: the resource compiler reads this file too.
#ifndef VELMORA_RESOURCE_H
#define VELMORA_RESOURCE_H

// Menus
#define IDM_MAIN_MENU 102     // main window: one popup "Menu" with every command
#define IDM_NAG 106           // move annotation popup ("!", "?", ...)
#define IDM_COMMENT 111       // comment editor popup
#define IDM_ENGINE 124        // engine popup: submenu 0 of submenu 0
#define IDM_GAME_WINDOW 7316  // game window menu bar: "Game", "Moves", "Tools"

// Dialog templates
#define IDD_PROMOTION 102
#define IDD_ABOUT 103  // portrait
#define IDD_GAME_LIST 104
#define IDD_CHOOSE_MOVE 105
#define IDD_COMMENT 107
#define IDD_NEW_LINE 108
#define IDD_MATERIAL 109
#define IDD_SETUP 112
#define IDD_START_GAME 113
#define IDD_HEADERS 138
#define IDD_TAGS 140
#define IDD_SAVE_TARGET 145
#define IDD_HEADERS_LANDSCAPE 150
#define IDD_SETUP_LANDSCAPE 151
#define IDD_GAME_WINDOW 141
#define IDD_ABOUT_LANDSCAPE 149
#define IDD_OPTIONS_STARTUP 142
#define IDD_OPTIONS_DISPLAY 143
#define IDD_OPTIONS_COLORS 144
#define IDD_SEARCH 146
#define IDD_SEARCH_LANDSCAPE 152
#define IDD_SEARCH_MATERIAL 153
#define IDD_SELECT_PORT 147
#define IDD_STAR_DIAMOND 148

// Bitmaps: twelve piece images side by side per piece set, toolbars and two small strips
#define IDB_DIAGRAM_LARGE 113
#define IDB_GAME_TOOLBAR 115        // 10 images of 16 x 16
#define IDB_EVALUATION_SYMBOLS 106  // 8 images of 15 x 14, red is transparent
#define IDB_SIDE_TO_MOVE 116        // 14 images of 14 x 14
#define IDB_STAUNTON_SMALL 118
#define IDB_STAUNTON_LARGE 119
#define IDB_ROYAL_LARGE 128
#define IDB_ROYAL_SMALL 129
#define IDB_TITAN_LARGE 131
#define IDB_TITAN_SMALL 132
#define IDB_DIAGRAM_SMALL 139
#define IDB_MAIN_TOOLBAR 141  // 3 images of 16 x 16

// Icon: the first icon of the program, also the ".pgn" document icon (index 0)
#define IDI_VELMORA 1

// Accelerators: Ctrl+A About, Ctrl+Q close
#define IDA_MAIN 3

// Commands of the main menu
#define ID_ABOUT 40003
#define ID_EXIT 40060
#define ID_OPTIONS 40061
#define ID_NEW_GAME 40069
#define ID_NEW_POSITION 40080
#define ID_SEARCH 40139
#define ID_IMPORT_STAR_DIAMOND 40142
#define ID_SHOW_GAME_AGAIN 1064  // the game window hands a new game to the main window

// Commands of the game window
#define ID_PROMOTE_LINE 40020
#define ID_EDIT_COMMENT 40021  // toolbar
#define ID_NAG_POPUP 40041     // toolbar
#define ID_CLOSE_GAME 40072
#define ID_PREVIOUS_MOVE 32772      // toolbar
#define ID_NEXT_MOVE 32773          // toolbar
#define ID_LEAVE_VARIATION 40040    // toolbar
#define ID_LAST_MOVE_TOOLBAR 1063   // toolbar
#define ID_FIRST_MOVE 40081
#define ID_LAST_MOVE 40082
#define ID_DELETE_MOVE 40083
#define ID_GAME_NEW_GAME 40109
#define ID_GAME_NEW_POSITION 40110
#define ID_OPEN_NEXT 40111
#define ID_MATERIAL_BALANCE 40112
#define ID_SAVE 40123
#define ID_SAVE_AS 40124
#define ID_REOPEN_FILE 40128
#define ID_ENGINE_START 40131
#define ID_ENGINE_MENU 40138  // toolbar
#define ID_CONNECT_UCB 40143
#define ID_LARGE_CLOCKS 40145
#define ID_FLIP_BOARD 1062         // toolbar
#define ID_EDIT_HEADERS 32774      // toolbar
#define ID_SAVE_IF_MODIFIED 32777  // toolbar

// Move annotations (menu 106), in id order: the glyph stored is (id + 188) mod 256
#define ID_NAG_NONE 40004
#define ID_NAG_GOOD 40005         // "!"
#define ID_NAG_MISTAKE 40006      // "?"
#define ID_NAG_BRILLIANT 40007    // "!!"
#define ID_NAG_BLUNDER 40008      // "??"
#define ID_NAG_INTERESTING 40009  // "!?"
#define ID_NAG_DUBIOUS 40010      // "?!"

// Position evaluations (submenu "Position" of menu 7316); 40029..40036 become owner-drawn
#define ID_EVAL_NONE 40028
#define ID_EVAL_EQUAL 40029                  // "="
#define ID_EVAL_UNCLEAR 40030                // "oo"
#define ID_EVAL_WHITE_SLIGHTLY_BETTER 40031  // "+="
#define ID_EVAL_BLACK_SLIGHTLY_BETTER 40032  // "=+"
#define ID_EVAL_WHITE_WINNING 40033          // "+-"
#define ID_EVAL_BLACK_WINNING 40034          // "-+"
#define ID_EVAL_WHITE_BETTER 40035           // "+/-"
#define ID_EVAL_BLACK_BETTER 40036           // "-/+"

// Comment editor popup (menu 111)
#define ID_COMMENT_RESET 40150
#define ID_COMMENT_CLEAR 40151
#define ID_COMMENT_CLOSE 40152

// Strings (their numbers share the range of the commands but not their meaning)
#define IDS_CAPTION 40018
#define IDS_CANNOT_OPEN_FILE 40020
#define IDS_CANNOT_CREATE_TOOLBAR 40027
#define IDS_ASK_DEFAULT_VIEWER 40028
#define IDS_CANNOT_CREATE_MAIN_WINDOW 40059
#define IDS_CANNOT_CREATE_CUSTOM_MENU 40110
#define IDS_CANNOT_LOAD_ENGINE 40111
#define IDS_ENGINE_NOT_VALID 40112
#define IDS_CANNOT_INIT_ENGINE 40114
#define IDS_ENGINE_ALREADY_LOADED 40115
#define IDS_ENGINE_STOPPED 40116
#define IDS_ENGINE_VERSION 40117
// Texts of the desktop menu bar, file list and device frame
#define IDS_MENU_BUTTON 40200
#define IDS_FOLDER_LABEL 40201
#define IDS_ALL_FOLDERS 40202
#define IDS_PGN_FILES 40203
#define IDS_ALL_FILES 40204
#define IDS_GAME_BUTTON 40205
#define IDS_MOVES_BUTTON 40206
#define IDS_TOOLS_BUTTON 40207
#define IDS_CHOOSE_FOLDER 40208
#define IDS_PORTRAIT 40209
#define IDS_LANDSCAPE 40210

// Controls of the game list dialog
#define IDC_GAME_LIST 1000
#define IDC_SHOW_RESULT 1001
#define IDC_SHOW_DATE 1002
#define IDC_SHOW_EVENT 1003
#define IDC_SHOW_ROUND 1004
#define IDC_SHOW_ECO 1005
#define IDC_SHOW_START 1056

// Controls of the "Choose move" and "New line" dialogs
#define IDC_MOVE_LIST 1010
#define IDC_OTHER_MOVES 1011
#define IDC_MOVES_LABEL 1012
#define IDC_OTHER_MOVES_LABEL 1013
#define IDC_NEW_LINE_ADD 1105
#define IDC_NEW_LINE_REPLACE 1106

// Buttons of the "Promotion in" dialog
#define IDC_PROMOTE_QUEEN 1101
#define IDC_PROMOTE_ROOK 1102
#define IDC_PROMOTE_KNIGHT 1103
#define IDC_PROMOTE_BISHOP 1104
#define IDC_PROMOTION_LABEL 1107

// Controls of both About templates (same ids, so a turn of the screen can move them)
#define IDC_ABOUT_ICON 1110
#define IDC_ABOUT_TITLE 1111
#define IDC_ABOUT_VERSION 1112
#define IDC_ABOUT_CREDITS 1113

// Controls of the board editor (112, 151): piece buttons white and black of each type
#define IDC_SETUP_WHITE_PAWN 1029
#define IDC_SETUP_BLACK_PAWN 1031
#define IDC_SETUP_WHITE_ROOK 1032
#define IDC_SETUP_BLACK_ROOK 1033
#define IDC_SETUP_WHITE_KNIGHT 1034
#define IDC_SETUP_BLACK_KNIGHT 1035
#define IDC_SETUP_WHITE_BISHOP 1036
#define IDC_SETUP_BLACK_BISHOP 1037
#define IDC_SETUP_WHITE_QUEEN 1038
#define IDC_SETUP_BLACK_QUEEN 1039
#define IDC_SETUP_WHITE_KING 1040
#define IDC_SETUP_BLACK_KING 1041
#define IDC_SETUP_CLEAR 1012
#define IDC_SETUP_COPY 1061
#define IDC_WHITE_TO_PLAY 1024
#define IDC_CASTLE_WHITE_KING 1025
#define IDC_CASTLE_WHITE_QUEEN 1026
#define IDC_CASTLE_BLACK_KING 1027
#define IDC_CASTLE_BLACK_QUEEN 1028
#define IDC_BLACK_TO_PLAY 1030
#define IDC_MOVE_NUMBER 1042
#define IDC_MOVE_NUMBER_LABEL 1043
#define IDC_MOVE_NUMBER_SPIN 1046

// Controls of the game headers dialog (138, 150)
#define IDC_HEADER_WHITE 1018
#define IDC_HEADER_BLACK 40125
#define IDC_HEADER_SITE 40126
#define IDC_HEADER_EVENT 40127
#define IDC_HEADER_ROUND 1006
#define IDC_HEADER_DATE 1008
#define IDC_RESULT_BLACK_WINS 1007
#define IDC_RESULT_DRAW 1009
#define IDC_RESULT_WHITE_WINS 1010
#define IDC_RESULT_LINE 1011
#define IDC_HEADER_MORE 1012
#define IDC_LABEL_WHITE 1070
#define IDC_LABEL_BLACK 1071
#define IDC_LABEL_SITE 1072
#define IDC_LABEL_EVENT 1073
#define IDC_LABEL_ROUND 1074
#define IDC_LABEL_DATE 1075
#define IDC_LABEL_RESULT 1076

// Controls of the tags dialog (140)
#define IDC_TAG_NAME 1018
#define IDC_TAG_VALUE 1020
#define IDC_TAG_SET 1021
#define IDC_TAG_DELETE 1022
#define IDC_TAG_LIST 1023
#define IDC_TAG_NAME_LABEL 1024
#define IDC_TAG_VALUE_LABEL 1025

// Buttons of the save-target dialog (145), stacked in this order
#define IDC_TARGET_NEW_FILE 1003
#define IDC_TARGET_RECENT_FIRST 1004  // to 1008, newest file first
#define IDC_TARGET_RECENT_LAST 1008
#define IDC_TARGET_OTHER_FILE 1009

// Controls of the "Start game" dialog (113)
#define IDC_START_ENGINE 1018
#define IDC_START_ENGINE_LABEL 1019
#define IDC_START_PLAY 1081
#define IDC_START_ANALYZE 1082
#define IDC_ENGINE_PLAYS_BLACK 1013
#define IDC_START_BUTTON 1077
#define IDC_START_CANCEL 1078

// "Select serial port" (147) and the Star Diamond import (148)
#define IDC_PORT_LIST 1018
#define IDC_PORT_LABEL 1019
#define IDC_PORT_HINT 1020
#define IDC_STAR_DIAMOND_MESSAGES 1000
#define IDC_STAR_DIAMOND_MESSAGES_LABEL 1001
#define IDC_STAR_DIAMOND_IMPORT 1094
#define IDC_STAR_DIAMOND_CONNECT 1097

// Controls of the comment editor (107) and the material balance (109)
#define IDC_COMMENT_TEXT 1050
#define IDC_MATERIAL_ON_BOARD 1051
#define IDC_MATERIAL_TAKEN 1052

// Game search (146, 152)
#define IDC_SEARCH_WHITE 1018
#define IDC_SEARCH_BLACK 40125
#define IDC_IGNORE_COLORS 1013
#define IDC_SEARCH_RESULT 40126
#define IDC_SEARCH_ECO 1020
#define IDC_ECO_WARNING 1083
#define IDC_SEARCH_POSITION 1084
#define IDC_EDIT_POSITION 1085
#define IDC_SEARCH_MATERIAL 1086
#define IDC_EDIT_MATERIAL 1087
#define IDC_SEARCH_RUN 1088
#define IDC_FILE_PROGRESS 1089
#define IDC_FILE_NAME 1092
#define IDC_FILES_PROGRESS 1093
#define IDC_FILES_TO_PARSE 1094
#define IDC_SEARCH_WHITE_LABEL 1096
#define IDC_SEARCH_BLACK_LABEL 1097
#define IDC_SEARCH_RESULT_LABEL 1098
#define IDC_SEARCH_ECO_LABEL 1099

// Material wanted by a search (153): the white counts pawn to queen, then the black ones, each
// box followed by its spin button
#define IDC_WANTED_FIRST 1200  // to 1209: white pawns, rooks, knights, bishops, queens, black ...
#define IDC_WANTED_SPIN_FIRST 1210  // to 1219

// Options: Display (143)
#define IDC_LAYOUT_LABEL 1118
#define IDC_LAYOUT 1119
#define IDC_PIECES_LABEL 1120
#define IDC_PIECE_SET 1080
#define IDC_DISPLAY_ARROW 1013
#define IDC_INDICATE_COMMENT 1012
// Options: Startup (142)
#define IDC_STARTUP_DISPLAY_LIST 1004
#define IDC_STARTUP_OPEN_LAST 1005
#define IDC_STARTUP_NEW_GAME_ALT 1006
#define IDC_STARTUP_NEW_GAME 1008
#define IDC_STARTUP_CHECK_ASSOC 1013
#define IDC_STARTUP_EXTRA 1015
// Options: Colors (144): red, green and blue boxes, each with its spin button
#define IDC_WHITE_RED 1055
#define IDC_WHITE_RED_SPIN 1056
#define IDC_WHITE_GREEN 1057
#define IDC_WHITE_GREEN_SPIN 1058
#define IDC_WHITE_BLUE 1059
#define IDC_WHITE_BLUE_SPIN 1060
#define IDC_BLACK_RED 1045
#define IDC_BLACK_RED_SPIN 1043
#define IDC_BLACK_GREEN 1046
#define IDC_BLACK_GREEN_SPIN 1044
#define IDC_BLACK_BLUE 1047
#define IDC_BLACK_BLUE_SPIN 1048
#define IDC_SELECT_RED 1049
#define IDC_SELECT_RED_SPIN 1050
#define IDC_SELECT_GREEN 1051
#define IDC_SELECT_GREEN_SPIN 1052
#define IDC_SELECT_BLUE 1053
#define IDC_SELECT_BLUE_SPIN 1054
#define IDC_COLORS_RESTORE 1012

#endif
