// Replays the main line of every game of a PGN file with chessops, the yardstick that
// bench/compare.sh holds velmora-pgn check against: parsePgn for the file, then parseSan and
// play for each main-line move from the start position (or the one the FEN tag gives).
//
// Usage: node chessops-replay.mjs FILE.pgn
// Run it from a folder whose node_modules holds chessops (compare.sh copies it next to
// build/compare/node/node_modules), since bare module names resolve from the script's folder.
// Prints one line: games, moves played, games stopped at a move that could not be played,
// games whose start position could not be set up, and the seconds spent.
import { readFileSync } from 'node:fs';
import { parsePgn, startingPosition } from 'chessops/pgn';
import { parseSan } from 'chessops/san';

const file = process.argv[2];
if (!file) {
    console.error('usage: node chessops-replay.mjs FILE.pgn');
    process.exit(2);
}

const started = process.hrtime.bigint();
// The collections are Windows-1252 or UTF-8; latin1 keeps every byte as one character, which
// is all the move text needs.
const text = readFileSync(file, 'latin1');
const games = parsePgn(text);

let moves = 0;
let stopped = 0;
let badStart = 0;
for (const game of games) {
    const setup = startingPosition(game.headers);
    if (setup.isErr) {
        ++badStart;
        continue;
    }
    const pos = setup.value;
    for (const node of game.moves.mainline()) {
        const move = parseSan(pos, node.san);
        if (!move) {
            ++stopped;
            break;
        }
        pos.play(move);
        ++moves;
    }
}
const seconds = Number(process.hrtime.bigint() - started) / 1e9;
console.log(
    `games ${games.length} moves ${moves} stopped ${stopped} bad-start ${badStart} ` +
        `seconds ${seconds.toFixed(3)}`,
);
