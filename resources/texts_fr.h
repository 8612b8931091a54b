// French texts of the menus, dialogs and string table laid out in Velmora.rc.inc.
// Only #define lines: the resource compiler reads this file (UTF-8).
#ifndef VELMORA_TEXTS_H
#define VELMORA_TEXTS_H

// Main menu (102)
#define TXT_MENU "Menu"
#define TXT_NEW "Nouveau"
#define TXT_NEW_GAME "Partie"
#define TXT_NEW_POSITION "Position"
#define TXT_NEW_SEARCH "Recherche"
#define TXT_TOOLS "Outils"
#define TXT_IMPORT_STAR_DIAMOND "Importer une partie Star Diamond..."
#define TXT_OPTIONS_DOTS "Options..."
#define TXT_ABOUT_DOTS "À propos..."
#define TXT_EXIT "Quitter"

// Game window menu bar (7316)
#define TXT_GAME "Partie"
#define TXT_GAME_NEW_GAME "Nouvelle partie"
#define TXT_GAME_NEW_POSITION "Nouvelle position..."
#define TXT_OPEN_NEXT "Ouvrir la suivante"
#define TXT_REOPEN_FILE "Rouvrir le fichier"
#define TXT_SAVE "Enregistrer"
#define TXT_SAVE_AS "Enregistrer sous..."
#define TXT_CLOSE "Fermer"
#define TXT_MOVES "Coups"
#define TXT_FIRST_MOVE "Premier coup"
#define TXT_LAST_MOVE "Dernier coup"
#define TXT_PROMOTE "Promouvoir la variante"
#define TXT_DELETE_MOVE "Supprimer le coup"
#define TXT_MATERIAL_BALANCE "Bilan matériel"
#define TXT_POSITION "Position"
#define TXT_EVAL_NONE "(aucune)"
#define TXT_ENGINE "Moteur"
#define TXT_ENGINE_START "Démarrer..."
#define TXT_CONNECT_UCB "Connecter l'UCB"
#define TXT_LARGE_CLOCKS "Grandes pendules"
#define TXT_OPTIONS "Options"

// Annotation popup (106)
#define TXT_NAG_NONE "(aucun)"

// Comment editor popup (111)
#define TXT_COMMENT "Commentaire"
#define TXT_COMMENT_RESET "Rétablir"
#define TXT_COMMENT_CLEAR "Effacer"
#define TXT_COMMENT_CLOSE "Fermer"

// Game list dialog (104)
#define TXT_SHOW_RESULT "Résultat"
#define TXT_SHOW_DATE "Date"
#define TXT_SHOW_EVENT "Tournoi"
#define TXT_SHOW_ECO "ECO"
#define TXT_SHOW_ROUND "Ronde"
#define TXT_SHOW_START "Début"

// Small dialogs of the game window (102, 105, 108)
#define TXT_PROMOTION_TITLE "Promotion en"
#define TXT_QUEEN "Dame"
#define TXT_ROOK "Tour"
#define TXT_KNIGHT "Cavalier"
#define TXT_BISHOP "Fou"
#define TXT_CHOOSE_MOVE_TITLE "Choisir le coup"
#define TXT_MOVES_LABEL "Coups :"
#define TXT_OK "OK"
#define TXT_CANCEL "Annuler"
#define TXT_NEW_LINE_TITLE "Nouvelle variante"
#define TXT_OTHER_MOVES "Autres coups"
#define TXT_ADD "Ajouter"
#define TXT_REPLACE "Remplacer"

// "Start game" (113)
#define TXT_START_GAME_TITLE "Démarrer une partie"
#define TXT_START_ENGINE "Moteur :"
#define TXT_START_PLAY "Jouer"
#define TXT_START_ANALYZE "Analyser"
#define TXT_ENGINE_PLAYS_BLACK "Le moteur joue les Noirs"
#define TXT_START_BUTTON "Démarrer"

// "Select serial port" (147) and the Star Diamond import (148)
#define TXT_SELECT_PORT_TITLE "Choisir le port série"
#define TXT_PORT "Port :"
#define TXT_PORT_HINT "Choisissez le port de l'échiquier, ou tapez son numéro."
#define TXT_STAR_DIAMOND_TITLE "Importer une partie Star Diamond"
#define TXT_CONNECT "Connecter"
#define TXT_IMPORT "Importer"
#define TXT_STAR_DIAMOND_MESSAGES "Messages du Star Diamond"

// About dialog (103, 149)
#define TXT_ABOUT_TITLE "À propos de Velmora"
#define TXT_ABOUT_NAME "Velmora 2.0"
#define TXT_ABOUT_VERSION "Version 2.0 pour Pocket PC et Windows"
#define TXT_ABOUT_CREDITS                                                                          \
    "Velmora affiche, modifie et enregistre les parties d'échecs des fichiers PGN et y fait des " \
    "recherches. Il joue et analyse avec des moteurs externes, tient une pendule d'échecs et "    \
    "dialogue avec les échiquiers électroniques UCB et Star Diamond.\n\nRéalisé par Trelvik."

// Comment editor (107) and material balance (109)
#define TXT_COMMENT_TITLE "Commentaire"
#define TXT_MATERIAL_TITLE "Bilan matériel"
#define TXT_STILL_ON_BOARD "Encore sur l'échiquier"
#define TXT_TAKEN "Pris"

// Board editor (112, 151)
#define TXT_SETUP_TITLE "Position"
#define TXT_SETUP_CLEAR "Vider"
#define TXT_SETUP_COPY "Copier"
#define TXT_CASTLE_WHITE_KING "Bl. O-O OK"
#define TXT_CASTLE_WHITE_QUEEN "Bl. O-O-O OK"
#define TXT_CASTLE_BLACK_KING "N. O-O OK"
#define TXT_CASTLE_BLACK_QUEEN "N. O-O-O OK"
#define TXT_WHITE_TO_PLAY "Trait aux blancs"
#define TXT_BLACK_TO_PLAY "Trait aux noirs"
#define TXT_MOVE_NUMBER "Coup n° :"

// Game headers (138, 150) and tags (140)
#define TXT_HEADERS_TITLE "En-têtes"
#define TXT_LABEL_WHITE "&Blancs :"
#define TXT_LABEL_BLACK "&Noirs :"
#define TXT_LABEL_SITE "&Lieu :"
#define TXT_LABEL_EVENT "&Tournoi :"
#define TXT_LABEL_ROUND "&Ronde :"
#define TXT_LABEL_DATE "&Date :"
#define TXT_LABEL_RESULT "Résultat :"
#define TXT_RESULT_WHITE_WINS "&1-0"
#define TXT_RESULT_DRAW "1/&2-1/2"
#define TXT_RESULT_BLACK_WINS "&0-1"
#define TXT_RESULT_LINE "&Variante"
#define TXT_HEADER_MORE "&Plus..."
#define TXT_TAGS_TITLE "Balises"
#define TXT_TAG_NAME "Balise :"
#define TXT_TAG_VALUE "Valeur :"
#define TXT_TAG_SET "Poser"
#define TXT_TAG_DELETE "Suppr."

// Save target (145)
#define TXT_SAVE_TARGET_TITLE "Enregistrer la partie"
#define TXT_TARGET_NEW_FILE "Créer un nouveau fichier"
#define TXT_TARGET_RECENT "Ajouter à <file0>"
#define TXT_TARGET_OTHER_FILE "Ajouter à un autre fichier"

// Recherche de parties (146, 152) et matériel cherché (153)
#define TXT_SEARCH_TITLE "Recherche de parties"
#define TXT_SEARCH_WHITE "&Blancs :"
#define TXT_SEARCH_BLACK "&Noirs :"
#define TXT_IGNORE_COLORS "&Ignorer les couleurs"
#define TXT_SEARCH_RESULT "&Résultat"
#define TXT_SEARCH_ECO "&Eco :"
#define TXT_SEARCH_POSITION "Position"
#define TXT_SEARCH_MATERIAL "Matériel"
#define TXT_SEARCH_RUN "Chercher"
#define TXT_WANTED_TITLE "Matériel"
#define TXT_WANTED_WHITE "Blancs"
#define TXT_WANTED_BLACK "Noirs"
#define TXT_WANTED_PAWNS "Pions :"
#define TXT_WANTED_ROOKS "Tours :"
#define TXT_WANTED_KNIGHTS "Cavaliers :"
#define TXT_WANTED_BISHOPS "Fous :"
#define TXT_WANTED_QUEENS "Dames :"

// Options (142, 143, 144)
#define TXT_OPTIONS_DISPLAY "Affichage"
#define TXT_OPTIONS_LAYOUT "Disposition :"
#define TXT_OPTIONS_PIECES "Pièces :"
#define TXT_OPTIONS_ARROW "Indiquer le dernier coup par une flèche"
#define TXT_OPTIONS_COMMENTS "Indiquer les commentaires par [...]"
#define TXT_OPTIONS_STARTUP "Démarrage"
#define TXT_OPTIONS_AT_STARTUP "Au démarrage :"
#define TXT_OPTIONS_DATABASES "Afficher la liste des bases"
#define TXT_OPTIONS_NEW_GAME "Créer une nouvelle partie"
#define TXT_OPTIONS_CHECK_ASSOC "Vérifier l'association .PGN"
#define TXT_OPTIONS_COLORS "Couleurs"
#define TXT_OPTIONS_WHITE_SQUARES "Cases blanches :"
#define TXT_OPTIONS_BLACK_SQUARES "Cases noires :"
#define TXT_OPTIONS_SELECTION "Sélection :"
#define TXT_OPTIONS_RESTORE "Restaurer"

// String table
#define TXT_S_CAPTION "Velmora 2.0"
#define TXT_S_CANNOT_OPEN_FILE "Impossible d'ouvrir le fichier"
#define TXT_S_CANNOT_CREATE_TOOLBAR "Impossible de créer les boutons de la barre d'outils"
#define TXT_S_ASK_DEFAULT_VIEWER                                                     \
    "Velmora n'est pas actuellement la visionneuse PGN par défaut ; voulez-vous l'" \
    "enregistrer comme visionneuse PGN par défaut ?"
#define TXT_S_CANNOT_CREATE_MAIN_WINDOW "Impossible de créer la fenêtre principale"
#define TXT_S_CANNOT_CREATE_CUSTOM_MENU "Impossible de créer le menu personnalisé"
#define TXT_S_CANNOT_LOAD_ENGINE "Impossible de charger le moteur"
#define TXT_S_ENGINE_NOT_VALID "Ce moteur n'est pas valide pour Velmora"
#define TXT_S_CANNOT_INIT_ENGINE "Impossible d'initialiser le moteur"
#define TXT_S_ENGINE_ALREADY_LOADED                                       \
    "Un moteur est déjà chargé. Veuillez quitter et relancer Velmora " \
    "pour charger un autre moteur."
#define TXT_S_ENGINE_STOPPED "Le moteur s'est arrêté de façon inattendue. Veuillez relancer Velmora"
#define TXT_S_ENGINE_VERSION \
    "La version du moteur n'est pas compatible avec cette version de Velmora"
#define TXT_S_MENU_BUTTON "Menu"
#define TXT_S_FOLDER_LABEL "Dossier :"
#define TXT_S_ALL_FOLDERS "Tous les dossiers"
#define TXT_S_PGN_FILES "Fichiers PGN"
#define TXT_S_ALL_FILES "Tous les fichiers"
#define TXT_S_GAME_BUTTON "Partie"
#define TXT_S_MOVES_BUTTON "Coups"
#define TXT_S_TOOLS_BUTTON "Outils"
#define TXT_S_CHOOSE_FOLDER "Choisir un dossier"
#define TXT_S_PORTRAIT "Portrait"
#define TXT_S_LANDSCAPE "Paysage"

#endif
