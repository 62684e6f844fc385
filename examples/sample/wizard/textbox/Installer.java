package textbox;

import java.io.ByteArrayInputStream;
import java.io.IOException;
import java.io.InputStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.nio.file.attribute.PosixFilePermission;
import java.util.ArrayDeque;
import java.util.Arrays;
import java.util.Deque;
import java.util.List;
import java.util.Set;

/**
 * Puts the files of Textbox into one folder. An installation that fails takes back what it had put
 * there; one over an earlier installation replaces its files and leaves all others alone.
 */
final class Installer {
    /** The payload, by the names that it has in the jar, too. */
    private static final List<String> FILES = Arrays.asList("bin/textbox", "README.txt", "uninstall");
    private static final List<String> PROGRAMS = Arrays.asList("bin/textbox", "uninstall");
    /** Names all files and itself; written last, so that it stands for a whole installation. */
    private static final String LIST = "installed-files.txt";
    private static final String HALF_WRITTEN = ".textbox-setup";

    private final Path folder;
    /** Files and folders that were not there before, the last one first. */
    private final Deque<Path> made = new ArrayDeque<>();

    private Installer(Path folder) {
        this.folder = folder;
    }

    /** Installs to the folder of that name and returns its absolute path. */
    static Path install(String folderName) throws SetupException {
        Installer installer = new Installer(Texts.toFolder(folderName));
        try {
            installer.installFiles();
        } catch (SetupException failure) {
            installer.takeBack();
            throw failure;
        }
        return installer.folder;
    }

    private void installFiles() throws SetupException {
        StringBuilder list = new StringBuilder();
        for (String name : FILES) {
            try (InputStream content = Installer.class.getResourceAsStream("/payload/" + name)) {
                write(name, content);
            } catch (IOException unreadable) {
                throw new SetupException("The setup file is damaged: " + Texts.reason(unreadable));
            }
            list.append(name).append('\n');
        }
        list.append(LIST).append('\n');
        write(LIST, new ByteArrayInputStream(list.toString().getBytes(StandardCharsets.UTF_8)));
    }

    /** A file appears under its name only when it is whole. */
    private void write(String name, InputStream content) throws SetupException {
        Path target = folder.resolve(name);
        makeFolder(target.getParent());
        Path half = target.resolveSibling(HALF_WRITTEN);
        boolean isNew = !Files.exists(target, LinkOption.NOFOLLOW_LINKS);
        try {
            try {
                Files.copy(content, half, StandardCopyOption.REPLACE_EXISTING);
                if (PROGRAMS.contains(name)) {
                    setExecutable(half);
                }
                Files.move(half, target, StandardCopyOption.REPLACE_EXISTING);
            } finally {
                Files.deleteIfExists(half);
            }
        } catch (IOException error) {
            throw new SetupException("Cannot write " + target + ": " + Texts.reason(error));
        }
        if (isNew) {
            made.push(target);
        }
    }

    private void makeFolder(Path wanted) throws SetupException {
        if (Files.isDirectory(wanted)) {
            return;
        }
        if (wanted.getParent() != null) {
            makeFolder(wanted.getParent());
        }
        try {
            Files.createDirectory(wanted);
        } catch (IOException error) {
            throw new SetupException(
                    "Cannot make the folder " + wanted + ": " + Texts.reason(error));
        }
        made.push(wanted);
    }

    /** Whoever may read the file may run it. */
    private static void setExecutable(Path file) throws IOException {
        Set<PosixFilePermission> rights = Files.getPosixFilePermissions(file);
        addWhen(rights, PosixFilePermission.OWNER_READ, PosixFilePermission.OWNER_EXECUTE);
        addWhen(rights, PosixFilePermission.GROUP_READ, PosixFilePermission.GROUP_EXECUTE);
        addWhen(rights, PosixFilePermission.OTHERS_READ, PosixFilePermission.OTHERS_EXECUTE);
        Files.setPosixFilePermissions(file, rights);
    }

    private static void addWhen(
            Set<PosixFilePermission> rights, PosixFilePermission has, PosixFilePermission gets) {
        if (rights.contains(has)) {
            rights.add(gets);
        }
    }

    private void takeBack() {
        for (Path path : made) {
            try {
                Files.deleteIfExists(path);
            } catch (IOException leftBehind) {
                // The failure that brought us here is the one worth telling.
            }
        }
    }
}
