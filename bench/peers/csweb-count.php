<?php
// CSWeb's CSPro text dictionary parser (csprousers/csweb,
// src/AppBundle/CSPro/Dictionary/Parser.php) parses a dictionary; prints its
// item count.
//
//     php csweb-count.php FILE.dcf
//
// The parser's classes are loaded from $KX_PEERS_DIR/csweb/src (see setup.sh)
// by a small autoloader instead of CSWeb's Composer set-up (Symfony and the
// rest are not needed to parse). The file is read whole and passed to
// Parser::parseDictionary(), as CSWeb's DictionaryHelper does; the count is
// the id items plus the items of every record of every level.
//
// With KX_PARSE_REPEAT=K the file is read and parsed K times in this process,
// and each time's wall-clock seconds go to stderr ("parse-seconds: ...").
$peers = getenv('KX_PEERS_DIR') ?: '/tmp/kx-peers';
$root = "$peers/csweb/src/src/";
spl_autoload_register(function ($class) use ($root) {
    $file = $root . str_replace('\\', '/', $class) . '.php';
    if (is_file($file)) {
        require $file;
    }
});
ini_set('memory_limit', '-1');

$repeat = max(1, (int) (getenv('KX_PARSE_REPEAT') ?: 1));
$times = [];
for ($i = 0; $i < $repeat; ++$i) {
    $dict = null;
    $start = hrtime(true);
    $parser = new AppBundle\CSPro\Dictionary\Parser();
    $dict = $parser->parseDictionary(file_get_contents($argv[1]));
    $times[] = sprintf('%.4f', (hrtime(true) - $start) / 1e9);
}
fwrite(STDERR, 'parse-seconds: ' . implode(' ', $times) . "\n");
$count = 0;
foreach ($dict->getLevels() as $level) {
    $count += count($level->getIdItems() ?? []);
    foreach ($level->getRecords() as $record) {
        $count += count($record->getItems());
    }
}
echo $count, "\n";
