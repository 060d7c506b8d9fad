#!/bin/sh
# Makes binaries and their symbol files with real tools, for tests.
#
# usage: real_files.sh DIRECTORY
set -eu
mkdir -p "$1"
cd "$1"

cat > tiny.c << 'SOURCE'
int g = 41;
int helper(int x) { return x + g; }
int entry(void) { return helper(1); }
SOURCE
sed 's/41/42/' tiny.c > other.c

# link TARGET BITS SOURCE NAME [OPTION...]
link() {
  target=$1 safeseh=$2 source=$3 name=$4
  shift 4
  clang --target="$target-pc-windows-msvc" -g -gcodeview -O0 -ffreestanding -c "$source.c" -o "$name.obj"
  lld-link /nologo /debug /nodefaultlib $safeseh /entry:entry /subsystem:console '/pdbaltpath:%_PDB%' \
    "/out:$name.exe" "/pdb:$name.pdb" "$@" "$name.obj"
}
link x86_64 '' tiny tiny64
link i686 /safeseh:no tiny tiny32
link x86_64 '' tiny blocks /pdbpagesize:8192
link x86_64 '' tiny repro /Brepro
link x86_64 '' tiny hostile '/pdbaltpath:..\..\..\evil.pdb'
link x86_64 '' tiny stream '/pdbaltpath:C:\b\x.pdb:stream'
# Another build of the same name.
mkdir -p other
(cd other && cp ../other.c tiny.c && link x86_64 '' tiny tiny64)

# A symbol file that was rewritten after the link: only its first age went up.
llvm-pdbutil pdb2yaml --all tiny64.pdb > tiny64.yaml
sed '/^PdbStream:/,/^[A-Z]/ s/Age:.*/Age: 3/' tiny64.yaml > rewritten.yaml
llvm-pdbutil yaml2pdb --pdb=rewritten.pdb rewritten.yaml

gcab -c -z tiny64.pd_ tiny64.pdb
gcab -c stored.cab tiny64.pdb
gcab -c two.cab tiny64.pdb tiny32.pdb
head -c 33554432 /dev/zero > zeros
gcab -c -z bomb.cab zeros
rm zeros

printf '#include <stdio.h>\nint main(void) { puts("hello"); return 0; }\n' > hello.c
cc -g -O1 -Wl,--build-id=sha1 -o hello.full hello.c
objcopy --only-keep-debug hello.full hello.debug
strip -o hello hello.full
objcopy --add-gnu-debuglink=hello.debug hello
cc -g -O1 -Wl,--build-id=none -o anonymous.full hello.c
objcopy --only-keep-debug anonymous.full anonymous.debug
strip -o anonymous anonymous.full
objcopy --add-gnu-debuglink=anonymous.debug anonymous
cc -g -O0 -Wl,--build-id=sha1 -o second hello.c
readelf -n hello | sed -n 's/ *Build ID: //p' > hello.id
llvm-pdbutil dump --summary tiny64.pdb | sed -n 's/ *GUID: {\(.*\)}/\1/p' > tiny64.guid
