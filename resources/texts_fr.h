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

// About dialog (103, 149)
#define TXT_ABOUT_TITLE "À propos de Velmora"
#define TXT_ABOUT_NAME "Velmora 2.0"
#define TXT_ABOUT_VERSION "Version 2.0 pour Pocket PC et Windows"
#define TXT_ABOUT_CREDITS                                                                          \
    "Velmora affiche, modifie et enregistre les parties d'échecs des fichiers PGN et y fait des " \
    "recherches. Il joue et analyse avec des moteurs externes, tient une pendule d'échecs et "    \
    "dialogue avec les échiquiers électroniques UCB et Star Diamond.\n\nRéalisé par Trelvik."

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
