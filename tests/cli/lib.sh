# Shared by the command-line tests: a free port in the test's own band, and
# whether a port listens, read from the kernel's socket table. A probe
# connection would be a caller, whose question is a box and whose refusal
# briefly takes the copy off its port.

# free_port BASE: a port from BASE to BASE + 5999 that nothing answers on.
free_port() {
  local p=$(( $1 + RANDOM % 6000 ))
  while (exec 3<>/dev/tcp/127.0.0.1/$p) 2>/dev/null; do p=$(( $1 + RANDOM % 6000 )); done
  echo $p
}
listening() {
  local hex; hex=$(printf ':%04X' "$1")
  awk -v h="$hex" '$4 == "0A" && substr($2, length($2) - 4) == h { found = 1 } END { exit !found }' \
    /proc/net/tcp /proc/net/tcp6 2>/dev/null
}
wait_listen() {
  for _ in $(seq 1 400); do listening "$1" && return 0; sleep 0.05; done
  return 1
}
