# Functions of ./wms: installing, building, the demo service. Sourced, not run.

say() { printf '%s\n' "$*"; }

packages_build="g++ cmake ninja-build ccache pkg-config ca-certificates
    libboost1.81-dev libboost-json1.81-dev libssl-dev libsqlite3-dev libpq-dev libsodium-dev libgd-dev
    libspdlog-dev libcli11-dev libgtest-dev libgmock-dev librapidcheck-dev"
packages_client="qtbase5-dev qtbase5-dev-tools qttranslations5-l10n"
packages_display="fonts-wqy-microhei fonts-symbola fontconfig"
packages_tests="clang-format clang-tidy libbenchmark-dev postgresql openssl procps poppler-utils"

# need SET...: installs the packages of these sets that are not there yet.
need() {
    local set wanted missing=()
    for set in "$@"; do
        wanted="packages_$set"
        local package
        for package in ${!wanted}; do
            dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed ||
                missing+=("$package")
        done
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    command -v apt-get >/dev/null || {
        say "Missing packages, and no apt-get to install them with: ${missing[*]}" >&2
        return 1
    }
    local root=()
    [ "$(id -u)" -eq 0 ] || root=(sudo)
    say "Installing with apt-get: ${missing[*]}"
    mkdir -p build
    if ! { "${root[@]}" apt-get update -qq &&
        "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
            "${missing[@]}"; } >build/install.log 2>&1; then
        tail -n 20 build/install.log >&2
        return 1
    fi
}

# build TARGET...: configures and builds the flavour; speaks only where the compiler has something to say.
build() {
    say "Building ($flavour) ..."
    mkdir -p build
    if ! { cmake --preset "$flavour" "-DWMS_BASE_URL=${base_url:-https://127.0.0.1:8443/}" \
        "-DWMS_BUILD_BENCH=${with_bench:-OFF}" &&
        cmake --build --preset "$flavour" ${1:+--target "$@"}; } >build/build.log 2>&1; then
        grep -nE 'error|FAILED|undefined' build/build.log | head -n 40 >&2 || tail -n 40 build/build.log >&2
        return 1
    fi
}

data_folder() { say "${WMS_DATA:-${XDG_DATA_HOME:-$HOME/.local/share}/tavrok_wms}"; }

service_pid=
service_port=

# start_demo_service FOLDER PORT: makes the demo data where there are none, starts the service, waits for its answer.
start_demo_service() {
    local folder=$1 port=$2 wmsd=build/$flavour/server/src/app/tavrok_wmsd
    mkdir -p "$folder"
    chmod 700 "$folder"
    rm -f "$folder/port"
    if [ ! -e "$folder/demo-ready" ]; then
        say "Making demo data in $folder ..."
        rm -f "$folder"/demo.db*
        "$wmsd" demo --database "$folder/demo.db" --pepper-file "$folder/pepper" >"$folder/demo.log" 2>&1 || {
            tail -n 20 "$folder/demo.log" >&2
            return 1
        }
        touch "$folder/demo-ready"
    fi
    "$wmsd" serve --database "$folder/demo.db" --pepper-file "$folder/pepper" --listen 127.0.0.1 --port "$port" \
        --port-file "$folder/port" >"$folder/service.log" 2>&1 &
    service_pid=$!
    trap stop_service EXIT
    local tries=0
    until [ -s "$folder/port" ]; do
        if ! kill -0 "$service_pid" 2>/dev/null || [ $((tries += 1)) -gt 300 ]; then
            say "The service did not start; its log ends with:" >&2
            tail -n 20 "$folder/service.log" >&2
            return 1
        fi
        sleep 0.1
    done
    service_port=$(cat "$folder/port")
    say "The service answers on https://127.0.0.1:$service_port/"
}

stop_service() {
    [ -n "$service_pid" ] || return 0
    kill -TERM "$service_pid" 2>/dev/null || true
    wait "$service_pid" 2>/dev/null || true
    service_pid=
}

# step NAME COMMAND...: one check of ./wms test; counts it.
step() {
    local name=$1
    shift
    say "== $name"
    if "$@"; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        say "FAILED: $name"
    fi
}

# run_ctest XML: every registered test; the suites that know both databases find a throw-away PostgreSQL. Tests kill
# processes and not the machine, so the database server need not wait for the disk.
run_ctest() {
    local xml=$1
    TAVROK_TEST_POSTGRESQL_OPTIONS="-c fsync=off" QT_QPA_PLATFORM=offscreen server/tests/with_postgresql \
        ctest --preset "$flavour" -j "$(nproc)" --timeout 300 --output-junit "$PWD/$xml" >build/test/ctest.log 2>&1 ||
        {
            grep -E '\(Failed\)|\(Timeout\)|Not Run|SEGFAULT|Subprocess' build/test/ctest.log || tail -n 30 build/test/ctest.log
            return 1
        }
}

occurrences() { { grep -oE "$1" "$2" || true; } | wc -l; }

# count_ctest XML: adds the single tests to passed and failed; the step itself was counted as one already.
count_ctest() {
    local xml=$1 tests failures
    if [ ! -s "$xml" ]; then
        failed=$((failed + 1))
        return
    fi
    tests=$(occurrences '<testcase ' "$xml")
    failures=$(occurrences '<testcase [^>]*status="fail"' "$xml")
    local skipped
    skipped=$(occurrences '<testcase [^>]*status="(notrun|disabled)"' "$xml")
    [ "$skipped" -eq 0 ] || say "skipped by their own word: $skipped"
    passed=$((passed + tests - failures - skipped))
    failed=$((failed + failures))
}

# The sources that are ours to format.
sources() { git ls-files 'src/*.cpp' 'src/*.h' 'server/*.cpp' 'server/*.h' 'tests/*.cpp' 'tests/*.h' 'bench/*.cpp' \
    'bench/*.h' 'resources/*.cpp' 'resources/*.h'; }
