package textbox;

import java.io.IOException;
import java.nio.charset.Charset;
import java.nio.file.AccessDeniedException;
import java.nio.file.DirectoryNotEmptyException;
import java.nio.file.FileAlreadyExistsException;
import java.nio.file.FileSystemException;
import java.nio.file.InvalidPathException;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.nio.file.Paths;

/** Words and letters: how an error is said, and what the user's locale makes of text and names. */
final class Texts {
    private Texts() {
    }

    /** The encoding of the user's locale. Since Java 18 the default charset is another thing. */
    static Charset nativeCharset() {
        String name = System.getProperty("native.encoding");
        return name == null ? Charset.defaultCharset() : Charset.forName(name);
    }

    /** The folder's absolute path; a user may begin it with ~, as in a shell. */
    static Path toFolder(String name) throws SetupException {
        String whole = name.equals("~") || name.startsWith("~/")
                ? Options.home() + name.substring(1)
                : name;
        return toPath(whole).toAbsolutePath().normalize();
    }

    static Path toPath(String name) throws SetupException {
        try {
            return Paths.get(name);
        } catch (InvalidPathException unusable) {
            // Mostly letters that the locale's encoding does not have.
            throw new SetupException("The name " + name + " cannot be used in this locale: "
                    + unusable.getReason());
        }
    }

    /** Why a file operation failed; the exceptions' own messages are often only the file's name. */
    static String reason(IOException error) {
        if (error instanceof AccessDeniedException) {
            return "permission denied";
        }
        if (error instanceof NoSuchFileException) {
            return "no such file or folder";
        }
        if (error instanceof FileAlreadyExistsException) {
            return "there is a file of that name";
        }
        if (error instanceof DirectoryNotEmptyException) {
            return "there is a folder of that name";
        }
        String reason = error instanceof FileSystemException
                ? ((FileSystemException) error).getReason()
                : error.getMessage();
        return reason == null ? error.toString() : reason;
    }
}
