package textbox;

import java.io.File;

/** What the command line asks for. Options that begin with "-cv:" never get here: they are the
 * launcher's. */
final class Options {
    static final String USAGE =
            "Options: -silent       install without questions\n"
            + "         -console      ask in the terminal, never in a window\n"
            + "         -dest DIR     the folder to install to, or to propose\n"
            + "         -record FILE  write the folder that was chosen into FILE";

    boolean silent;
    boolean console;
    String folder = home() + File.separator + "textbox";
    /** Null when nothing is to be recorded. */
    String record;

    static Options parse(String[] args) throws SetupException {
        Options options = new Options();
        for (int i = 0; i < args.length; i++) {
            switch (args[i]) {
                case "-silent":
                    options.silent = true;
                    break;
                case "-console":
                    options.console = true;
                    break;
                case "-dest":
                    options.folder = value(args, ++i);
                    break;
                case "-record":
                    options.record = value(args, ++i);
                    break;
                default:
                    throw new SetupException("Unknown option: " + args[i] + "\n" + USAGE);
            }
        }
        return options;
    }

    /** The shell's idea of the home folder, which a user can set, before that of the system. */
    static String home() {
        String home = System.getenv("HOME");
        return home == null || home.isEmpty() ? System.getProperty("user.home") : home;
    }

    private static String value(String[] args, int index) throws SetupException {
        if (index == args.length || args[index].isEmpty()) {
            throw new SetupException(args[index - 1] + " must be followed by a name.\n" + USAGE);
        }
        return args[index];
    }
}
