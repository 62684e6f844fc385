import java.io.BufferedReader;
import java.io.IOException;
import java.nio.charset.Charset;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.Paths;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Collections;
import java.util.List;

/** Asks a setup for the Javas that suit it. */
public final class FindJava {
    /** A Java that suits, and the jvm file that describes it; whoever asked removes that file. */
    public static final class Match {
        public final Path home;
        public final Path jvmFile;

        Match(Path home, Path jvmFile) {
            this.home = home;
            this.jvmFile = jvmFile;
        }
    }

    /** File names are bytes, and this is how Java reads them. */
    private static final Charset NAMES = Charset.forName(System.getProperty("sun.jnu.encoding"));

    private FindJava() {
    }

    /** The best one alone, or none; looks where the setup's hints say. */
    public static List<Match> search(Path setup, String... options)
            throws IOException, InterruptedException {
        return ask("SEARCH", setup, options);
    }

    /** All that are on the disks; this can take minutes. */
    public static List<Match> searchAll(Path setup, String... options)
            throws IOException, InterruptedException {
        return ask("SEARCH_ALL", setup, options);
    }

    private static List<Match> ask(String action, Path setup, String[] options)
            throws IOException, InterruptedException {
        Path input = Files.createTempFile("search", ".tag");
        Path log = Files.createTempFile("search", ".log");
        Path answer = Files.createTempFile("search", ".txt");
        try {
            Files.write(input, Arrays.asList("ACTION: " + action, "LOGFILE: " + log), NAMES);
            // Silent comes first of all: then nothing but the answer is on standard output.
            List<String> command = new ArrayList<>(Arrays.asList(setup.toString(), "-cv:silent"));
            command.addAll(Arrays.asList(options));
            command.addAll(Arrays.asList("-cv:in", input.toString()));
            int status = run(new ProcessBuilder(command).redirectOutput(answer.toFile()));
            if (status != 0) { // the lines mean nothing
                throw new IOException(setup + ": status " + status + errorsIn(log));
            }
            return matchesIn(Files.readAllLines(answer, NAMES));
        } finally {
            for (Path file : Arrays.asList(input, log, answer)) {
                Files.deleteIfExists(file);
            }
        }
    }

    /** An interrupt ends the search, which then cleans up behind itself. */
    private static int run(ProcessBuilder builder) throws IOException, InterruptedException {
        Process process = builder.redirectError(ProcessBuilder.Redirect.INHERIT).start();
        try {
            process.getOutputStream().close();
            return process.waitFor();
        } finally {
            process.destroy();
        }
    }

    /** How many there are, then two lines for each. */
    private static List<Match> matchesIn(List<String> lines) throws IOException {
        int count = lines.isEmpty() ? -1 : Integer.parseInt(lines.get(0));
        if (lines.size() != 1 + 2 * count) { // a search for all that failed on the way ends with "0"
            throw new IOException("The answer is not whole: " + lines);
        }
        List<Match> matches = new ArrayList<>();
        for (int i = 1; i < lines.size(); i += 2) {
            matches.add(new Match(Paths.get(lines.get(i)), Paths.get(lines.get(i + 1))));
        }
        return matches;
    }

    private static String errorsIn(Path log) throws IOException {
        StringBuilder errors = new StringBuilder();
        try (BufferedReader lines = Files.newBufferedReader(log, NAMES)) {
            for (String line = lines.readLine(); line != null; line = lines.readLine()) {
                errors.append(line.startsWith("ERROR: ") ? "\n" + line.substring(7) : "");
            }
        }
        return errors.toString();
    }

    /** FindJava SETUP [OPTION]...: as find-java.sh. */
    public static void main(String[] args) throws InterruptedException {
        String[] options = Arrays.copyOfRange(args, 1, args.length);
        List<Match> matches = Collections.emptyList();
        try {
            matches = search(Paths.get(args[0]), options);
            for (Match match : matches) {
                System.out.println(match.home);
                Files.delete(match.jvmFile);
            }
        } catch (IOException e) {
            System.err.println("find-java: " + e.getMessage());
            System.exit(2);
        }
        System.exit(matches.isEmpty() ? 1 : 0);
    }
}
