entity TOP is port (i : in bit; o : out bit_vector range 0 to 3); end TOP;
architecture A of TOP is
    component C is generic (g : integer := -1); port (x : in bit; y : out w(1 to 2)); end component C;
    signal s, t : bit;
begin
    -- rtl_synthesis off
    nothing
    -- rtl_synthesis on
    u1 : C generic map (g => 5) port map (x => s, y(1 to 2) => t(1 downto 0));
    u2 : C port map (i, o);
    s <= i; o <= s; t <= o(3 downto 0);
    p : process (i) s := 1; end process p;
end A;
