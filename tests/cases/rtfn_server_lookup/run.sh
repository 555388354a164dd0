# rtfn with a server name: the client opens //SERVER/_admin/Manage_QVS/manage.cmd,
# which Linux resolves like /SERVER/_admin/..., so SERVER names a directory
# holding the simulated volume (in a private mount namespace).
exec bash "$WITH_ADMIN" --private --state state.txt --log requests.log /tmp/logsift-server/_admin -- \
    bash -c 'exec -a logsift "$LOGSIFT" -P rav rtfn P1 tmp/logsift-server'
