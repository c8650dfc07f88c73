/* A plugin of qemu's user emulation (API version 1, Debian 12) that counts the instructions of the
 * emulated program. They stand, as a 64-bit number, at the beginning of the file OUT, so that they can be
 * read while the program runs. The programs of bench/ begin and end a section by closing files that
 * nobody has open (bench/support/Row.cpp); the instructions of each section go to the standard error as
 * "section N".
 *
 *   cc -shared -fPIC -o count.so count.c
 *   qemu-arm -plugin ./count.so,out=FILE PROGRAM
 *
 * Debian's packages have no header for plugins: what is used of the interface is declared here. */
#include <fcntl.h>
#include <inttypes.h>
#include <stdio.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

#define CLOSE_ON_ARM 6
#define SECTION_BEGINS (-7400001)
#define SECTION_ENDS (-7400002)

typedef uint64_t qemu_plugin_id_t;
struct qemu_info;
struct qemu_plugin_tb;
enum qemu_plugin_op { QEMU_PLUGIN_INLINE_ADD_U64 };

typedef void (*translated)(qemu_plugin_id_t, struct qemu_plugin_tb *);
typedef void (*called)(qemu_plugin_id_t, unsigned, int64_t, uint64_t, uint64_t, uint64_t, uint64_t,
    uint64_t, uint64_t, uint64_t, uint64_t);

void qemu_plugin_register_vcpu_tb_trans_cb(qemu_plugin_id_t, translated);
void qemu_plugin_register_vcpu_syscall_cb(qemu_plugin_id_t, called);
void qemu_plugin_register_vcpu_tb_exec_inline(
    struct qemu_plugin_tb *, enum qemu_plugin_op, void *, uint64_t);
size_t qemu_plugin_tb_n_insns(const struct qemu_plugin_tb *);

__attribute__((visibility("default"))) int qemu_plugin_version = 1;

static uint64_t *count;
static uint64_t begin;

static void countBlock(qemu_plugin_id_t id, struct qemu_plugin_tb *block)
{
    (void)id;
    qemu_plugin_register_vcpu_tb_exec_inline(
        block, QEMU_PLUGIN_INLINE_ADD_U64, count, qemu_plugin_tb_n_insns(block));
}

static void watchCall(qemu_plugin_id_t id, unsigned cpu, int64_t number, uint64_t file, uint64_t a2,
    uint64_t a3, uint64_t a4, uint64_t a5, uint64_t a6, uint64_t a7, uint64_t a8)
{
    (void)id, (void)cpu, (void)a2, (void)a3, (void)a4, (void)a5, (void)a6, (void)a7, (void)a8;
    if (number != CLOSE_ON_ARM) {
        return;
    }
    if ((int32_t)file == SECTION_BEGINS) {
        begin = *count;
    } else if ((int32_t)file == SECTION_ENDS) {
        dprintf(STDERR_FILENO, "section %" PRIu64 "\n", *count - begin);
    }
}

__attribute__((visibility("default"))) int qemu_plugin_install(
    qemu_plugin_id_t id, const struct qemu_info *info, int argc, char **argv)
{
    (void)info;
    const char *out = argc > 0 && strncmp(argv[0], "out=", 4) == 0 ? argv[0] + 4 : "";
    const int file = open(out, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (file < 0 || ftruncate(file, sizeof *count) != 0) {
        return 1;
    }
    count = mmap(NULL, sizeof *count, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (count == MAP_FAILED) {
        return 1;
    }
    qemu_plugin_register_vcpu_tb_trans_cb(id, countBlock);
    qemu_plugin_register_vcpu_syscall_cb(id, watchCall);
    return 0;
}
