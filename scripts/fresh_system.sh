# Functions for scripts that try things in a system with nothing but the base of this distribution.
# To be sourced; `passed` and `failed` count steps, `log` names the log of the running one.
#
# A system is a directory made by debootstrap that is the root of a mount namespace of its own, and
# gets its packages from where this machine gets its own.

passed=0 failed=0

refuse() {
  echo "SKIPPED: $*"
  echo "0 passed, 0 failed, 1 skipped"
  exit 0
}

# Runs a step with its output in the log, which is shown when the step fails.
step() { # WHAT COMMAND...
  local what=$1 start=$EPOCHREALTIME status
  shift
  "$@" > "$log" 2>&1 < /dev/null
  status=$?
  printf '%-8s%7.1f s  %s\n' "$([[ $status -eq 0 ]] && echo ok || echo FAILED)" \
    "$(awk -v from="$start" -v to="$EPOCHREALTIME" 'BEGIN { print to - from }')" "$what"
  if [[ $status -eq 0 ]]; then
    passed=$((passed + 1))
    return 0
  fi
  failed=$((failed + 1))
  tail -n 30 "$log" | sed 's/^/    /'
  return 1
}

# Runs a step whose output must be one line.
expect() { # EXPECTED COMMAND...
  local expected=$1 out
  shift
  out=$("$@") || return 1
  echo "$out"
  [[ $out == "$expected" ]]
}

# The name of this distribution's release.
this_release() {
  (. /etc/os-release && echo "${VERSION_CODENAME:-}")
}

# The mirror that apt takes a release from.
mirror() { # RELEASE
  apt-get indextargets --format '$(SITE) $(CODENAME)' 'Created-By: Packages' |
    awk -v release="$1" '$2 == release { print $1; exit }'
}

# Ends the script with SKIPPED where systems cannot be made and entered.
need_fresh_systems() { # TOOL...
  local tool
  [[ $(id -u) -eq 0 ]] || refuse "only root can enter a fresh system"
  for tool in debootstrap unshare pivot_root "$@"; do
    command -v "$tool" > /dev/null || refuse "$tool is not installed"
  done
  unshare --mount --propagation private true 2> /dev/null || refuse "no mount namespace can be made here"
  [[ -n $(mirror "$(this_release)") ]] ||
    refuse "apt knows no mirror of this distribution; run apt-get update"
}

# Makes a directory for systems and sets `work`; it goes when the script ends.
make_work() { # NAME
  local home=${XDG_CACHE_HOME:-$HOME/.cache}/quiver
  mkdir -p "$home" && work=$(mktemp -d "$home/$1.XXXXXX") || exit 1
  trap remove_work EXIT
}

# Nothing may be mounted below what is removed.
remove_work() {
  if grep -qF " $work/" /proc/self/mounts; then
    echo "something is still mounted below $work; it stays" >&2
  else
    rm -rf --one-file-system "$work"
  fi
}

# Runs a function of the calling script in a mount and a process namespace that end with it: the
# script is started again with --in-namespace, the function and its arguments.
in_namespace() { # FUNCTION ARGUMENT...
  unshare --mount --propagation private --pid --fork --kill-child "$0" --in-namespace "$@"
}

# Makes a system and mounts what its programs expect. In a namespace only.
make_system() { # ROOT
  local root=$1 release
  release=$(this_release)
  debootstrap --variant=minbase "$release" "$root" "$(mirror "$release")" || return 1
  # Only at a mount point can programs inside make mount namespaces of their own.
  mount --bind "$root" "$root" && mount -t proc proc "$root/proc" &&
    mkdir -p "$root/dev/pts" "$root/dev/shm" &&
    mount -t devpts -o newinstance,ptmxmode=0666 devpts "$root/dev/pts" &&
    mount -t tmpfs tmpfs "$root/dev/shm" && ln -sf pts/ptmx "$root/dev/ptmx" || return 1
  # Its apt is told what this machine's is told.
  mount --bind /etc/apt "$root/etc/apt" && mount -o remount,bind,ro "$root/etc/apt" || return 1
  if [[ -d /usr/share/keyrings ]]; then
    mount --bind /usr/share/keyrings "$root/usr/share/keyrings" || return 1
  fi
  cp /etc/hosts "$root/etc/hosts"
  inside "$root" apt-get update
}

# Not by chroot alone: who enters the namespace of a process inside would be outside again.
inside() { # ROOT COMMAND...
  unshare --mount --propagation private bash -c '
    cd "$1" && mkdir -p .outside && pivot_root . .outside && cd / && umount -l /.outside || exit
    shift
    exec /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 \
      DEBIAN_FRONTEND=noninteractive "$@"' - "$@"
}

install_inside() { # ROOT PACKAGE...
  local root=$1
  shift
  inside "$root" apt-get install --yes --no-install-recommends "$@"
}

# What a user of the package does with it; `project` is the checkout.

install_deb() { # ROOT DIRECTORY, which holds the package below deb/
  cp "$2"/deb/*.deb "$1/root/quiver.deb"
  install_inside "$1" /root/quiver.deb
}

use_program() { # ROOT
  expect "quiver 2.9.0" inside "$1" quiver --version || return 1
  mkdir -p "$1/root/checkout/lib"
  echo 'int parse(void);' > "$1/root/checkout/lib/parse.c"
  expect /root/checkout/lib/parse.c inside "$1" quiver find src 'C:\ci\7\lib\parse.c' -d /root/checkout,recursive
}

# Builds and runs tests/consumer against the package, in both ways.
build_consumers() { # ROOT
  cp -r "$project/tests/consumer" "$1/root/consumer"
  step "install a compiler, CMake and pkg-config" install_inside "$1" g++ make cmake pkg-config || return 1
  step "build and run the consumer by CMake" consume_by_cmake "$1"
  step "build and run the consumer by pkg-config" consume_by_pkg_config "$1"
}

use_consumer() { # ROOT DIRECTORY
  expect /root/checkout/lib/parse.c inside "$1" "$2/consumer" /root/checkout 'C:\ci\7\lib\parse.c'
}

consume_by_cmake() { # ROOT
  inside "$1" cmake -S /root/consumer -B /root/by_cmake && inside "$1" cmake --build /root/by_cmake &&
    use_consumer "$1" /root/by_cmake
}

consume_by_pkg_config() { # ROOT
  mkdir "$1/root/by_pkg_config"
  inside "$1" make -C /root/by_pkg_config -f /root/consumer/Makefile && use_consumer "$1" /root/by_pkg_config
}
