# Every pool keeps a key of its own, from which its name's bytes come back:
# a name that is not valid UTF-8 has each such byte as \xHH and its
# backslashes doubled; each file type's key is spelled as its own file
# spells the pool; "" names the pool whose name is empty, no operand every
# pool.
json=$(dirname "$LOGSIFT")/logsift-json
"$json" -P rav --summary vbfn >all.json
echo "vbfn: status $?"
jq -c '.pools | keys' all.json
jq -c '.totals' all.json
"$json" -P rav --summary rtfn >logs.json
echo "rtfn: status $?"
jq -c '.pools | keys' logs.json
"$json" -P rav --summary vbfn abc | jq -c '.file | {path, pool}'
"$json" -P rav --summary rtfn abc | jq -c '.file | {path, pool}'
"$json" -P rav --summary vbfn "" | jq -c '.file | {path, pool}'
"$json" -P rav --summary vbfn "$(printf 'A\xff')" | jq -c '.file | {pool}'
